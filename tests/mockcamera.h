#pragma once

#include <QByteArray>
#include <QVector>
#include <linux/usb/video.h>
#include <linux/uvcvideo.h>
#include <linux/videodev2.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <map>
#include <memory>
#include <umockdev.h>
#include <utility>

/// A camera made by umockdev: a capture node, a metadata node, and the controls of unit 4. Answers
/// requests in a thread of umockdev while the caller waits.
struct MockCamera
{
    struct Control
    {
        int length = 60;
        int info = 3;
    };

    MockCamera(QByteArray itsSerial, QByteArray itsDescriptors)
        : serial(std::move(itsSerial))
        , descriptors(std::move(itsDescriptors))
    {
        const auto handle =
            +[](UMockdevIoctlBase *, UMockdevIoctlClient *client, MockCamera *self) {
                const int reply = self->answer(client);
                umockdev_ioctl_client_complete(client, std::max(reply, -1), -reply);
                return TRUE;
            };
        g_signal_connect(handler.get(), "handle-ioctl", G_CALLBACK(handle), this);
    }
    ~MockCamera() { unplug(); }

    /// Adds the nodes /dev/video<number> and /dev/video<number + 1>.
    void plugIn(int number, const QByteArray &port = "1-2.3")
    {
        static int plugged = 0;
        captureNode = "/dev/video" + QByteArray::number(number);
        const QByteArray device = "/devices/" + port;
        const QByteArray interface = device + '/' + port + ":1.0";
        add(device, "E: SUBSYSTEM=usb\nA: idVendor=12ab\nA: idProduct=00cd\nA: serial=" + serial +
                        "\nA: devnum=" + QByteArray::number(++plugged) +
                        "\nH: descriptors=" + descriptors.toHex());
        add(interface, "E: SUBSYSTEM=usb");
        for (const int node : {number, number + 1}) {
            const QByteArray name = "video" + QByteArray::number(node);
            add(interface + "/video4linux/" + name,
                "N: " + name + "=00\nE: DEVNAME=/dev/" + name +
                    "\nE: SUBSYSTEM=video4linux\nA: dev=81:" + QByteArray::number(node));
            umockdev_testbed_detach_ioctl(testbed.get(), "/dev/" + name, nullptr);
            umockdev_testbed_attach_ioctl(testbed.get(), "/dev/" + name, handler.get(), nullptr);
        }
    }

    void unplug()
    {
        captureNode.clear();
        while (!devices.isEmpty())
            umockdev_testbed_remove_device(testbed.get(), "/sys" + devices.takeLast());
    }

    std::map<int, Control> controls = {{7, {}}, {8, {60, 1}}};
    std::map<int, int> replies; ///< to a request such as UVC_SET_CUR; negative: errno; 0: as usual
    int queries = 0;            ///< number of requests to controls
    int writes = 0;             ///< number of commands, including failed ones
    QByteArray written;         ///< the last command that succeeded

private:
    template <typename Object>
    using Pointer = std::unique_ptr<Object, decltype(&g_object_unref)>;

    void add(const QByteArray &device, const QByteArray &properties)
    {
        const QByteArray text = "P: " + device + '\n' + properties + '\n';
        if (!umockdev_testbed_add_from_string(testbed.get(), text, nullptr))
            qFatal("umockdev rejects this device:\n%s", text.constData());
        devices << device;
    }

    /// The memory that `data` points to at `offset`.
    static UMockdevIoctlData *resolve(UMockdevIoctlData *data, size_t offset, size_t size)
    {
        UMockdevIoctlData *const part = umockdev_ioctl_data_resolve(data, offset, size, nullptr);
        g_object_unref(part); // `data` owns it
        return part;
    }

    /// Returns 0, a length or a negative errno.
    int answer(UMockdevIoctlClient *client)
    {
        UMockdevIoctlData *const argument = umockdev_ioctl_client_get_arg(client);
        const auto request = umockdev_ioctl_client_get_request(client);
        const bool isCapture = captureNode == umockdev_ioctl_client_get_devnode(client);
        if (captureNode.isEmpty())
            return -ENODEV;
        if (request == VIDIOC_QUERYCAP) {
            const __u32 kind = isCapture ? V4L2_CAP_VIDEO_CAPTURE : V4L2_CAP_META_CAPTURE;
            const v4l2_capability capability = {
                "uvcvideo", "A\033camera", "usb-0000:00:14.0-2.3", 0, 0, kind, {}};
            std::memcpy(resolve(argument, 0, sizeof capability)->data, &capability,
                        sizeof capability);
            return 0;
        }
        if (request != UVCIOC_CTRL_QUERY || !isCapture)
            return -ENOTTY;
        UMockdevIoctlData *const data = resolve(argument, 0, sizeof(uvc_xu_control_query));
        ++queries;
        const auto query = *reinterpret_cast<const uvc_xu_control_query *>(data->data);
        const size_t offset = offsetof(uvc_xu_control_query, data);
        writes += query.query == UVC_SET_CUR;
        const int reply = replies[query.query];
        return reply ? reply : transfer(query, resolve(data, offset, query.size)->data);
    }

    int transfer(const uvc_xu_control_query &query, guint8 *bytes)
    {
        const auto found = controls.find(query.selector);
        if (query.unit != 4 || found == controls.end())
            return -ENOENT;
        const auto [length, info] = found->second;
        const QByteArray number(reinterpret_cast<const char *>(&length), 2);
        const QByteArray answer = query.query == UVC_GET_LEN    ? number
                                  : query.query == UVC_GET_INFO ? QByteArray(1, char(info))
                                                                : QByteArray(length, 's');
        if (query.size != answer.size())
            return -ENOBUFS;
        if (query.query == UVC_SET_CUR)
            written = QByteArray(reinterpret_cast<char *>(bytes), query.size);
        else
            std::copy(answer.cbegin(), answer.cend(), bytes);
        return 0;
    }

    static inline const Pointer<UMockdevTestbed> testbed{umockdev_testbed_new(), g_object_unref};
    const Pointer<UMockdevIoctlBase> handler{umockdev_ioctl_base_new(), g_object_unref};
    const QByteArray serial;
    const QByteArray descriptors;
    QVector<QByteArray> devices; ///< in sysfs, parents first
    QByteArray captureNode;      ///< empty: unplugged
};
