#pragma once

#include <QByteArray>
#include <QVector>
#include <linux/uvcvideo.h>
#include <linux/videodev2.h>

#include <cerrno>
#include <cstring>
#include <map>
#include <memory>
#include <umockdev.h>
#include <utility>

/// A camera made by umockdev: a capture node, a metadata node, and the controls of unit 4. Requests
/// are answered in a thread of umockdev while the caller waits.
struct MockCamera
{
    enum Query { SetCur = 0x01, GetCur = 0x81, GetLen = 0x85, GetInfo = 0x86 };
    struct Control
    {
        int length = 60;
        int info = 3;
    };
    struct Reply
    {
        int result = 0; ///< 0: behave like a driver
        int error = 0;
    };

    MockCamera(QByteArray itsSerial, QByteArray itsDescriptors)
        : serial(std::move(itsSerial))
        , descriptors(std::move(itsDescriptors))
    {
        g_signal_connect(handler, "handle-ioctl", G_CALLBACK(handle), this);
    }
    ~MockCamera()
    {
        unplug();
        g_object_unref(handler);
    }
    Q_DISABLE_COPY(MockCamera)

    /// Adds the nodes /dev/video<number> and the next one, always at the same port.
    void plugIn(int number)
    {
        captureNode = "/dev/video" + QByteArray::number(number);
        const QByteArray port = "/devices/1-2.3";
        const QByteArray interface = port + "/1-2.3:1.0";
        add(port, "E: SUBSYSTEM=usb\nA: idVendor=12ab\nA: idProduct=00cd\nA: serial=" + serial +
                      "\nH: descriptors=" + descriptors.toHex());
        add(interface, "E: SUBSYSTEM=usb");
        for (const int node : {number, number + 1}) {
            const QByteArray name = "video" + QByteArray::number(node);
            add(interface + "/video4linux/" + name, "N: " + name + "=00\nE: DEVNAME=/dev/" + name +
                                                        "\nE: SUBSYSTEM=video4linux\n"
                                                        "L: device=../../../1-2.3:1.0");
            umockdev_testbed_detach_ioctl(testbed.get(), "/dev/" + name, nullptr);
            umockdev_testbed_attach_ioctl(testbed.get(), "/dev/" + name, handler, nullptr);
        }
    }

    void unplug()
    {
        captureNode.clear();
        while (!devices.isEmpty())
            umockdev_testbed_remove_device(testbed.get(), "/sys" + devices.takeLast());
    }

    std::map<int, Control> controls = {{7, {}}, {8, {60, 1}}};
    std::map<std::pair<int, int>, Reply> replies; ///< by query and selector
    int writes = 0;                               ///< number of SetCur, including failed ones
    QByteArray written;                           ///< by the last one that succeeded

private:
    void add(const QByteArray &device, const QByteArray &properties)
    {
        const QByteArray text = "P: " + device + '\n' + properties + '\n';
        if (!umockdev_testbed_add_from_string(testbed.get(), text, nullptr))
            qFatal("umockdev does not understand:\n%s", text.constData());
        devices << device;
    }

    static gboolean handle(UMockdevIoctlBase * /*handler*/, UMockdevIoctlClient *client, void *self)
    {
        const Reply reply = static_cast<MockCamera *>(self)->answer(client);
        umockdev_ioctl_client_complete(client, reply.result, reply.error);
        return TRUE;
    }

    /// The memory that `data` points to at `offset`.
    static UMockdevIoctlData *resolve(UMockdevIoctlData *data, size_t offset, size_t size)
    {
        UMockdevIoctlData *const part = umockdev_ioctl_data_resolve(data, offset, size, nullptr);
        g_object_unref(part); // `data` owns it
        return part;
    }

    Reply answer(UMockdevIoctlClient *client)
    {
        UMockdevIoctlData *const argument = umockdev_ioctl_client_get_arg(client);
        const auto request = umockdev_ioctl_client_get_request(client);
        const bool isCapture = captureNode == umockdev_ioctl_client_get_devnode(client);
        if (captureNode.isEmpty())
            return {-1, ENODEV};
        if (request == VIDIOC_QUERYCAP) {
            const __u32 kind = isCapture ? V4L2_CAP_VIDEO_CAPTURE : V4L2_CAP_META_CAPTURE;
            const v4l2_capability capability = {
                "uvcvideo", "A\033camera", "usb-0000:00:14.0-2.3", 0, 0, kind, {}};
            std::memcpy(resolve(argument, 0, sizeof capability)->data, &capability,
                        sizeof capability);
            return {};
        }
        if (request != UVCIOC_CTRL_QUERY || !isCapture)
            return {-1, ENOTTY};
        UMockdevIoctlData *const data = resolve(argument, 0, sizeof(uvc_xu_control_query));
        const auto query = *reinterpret_cast<const uvc_xu_control_query *>(data->data);
        const size_t offset = offsetof(uvc_xu_control_query, data);
        writes += query.query == SetCur;
        const Reply reply = replies[{query.query, query.selector}];
        return reply.result == 0 ? transfer(query, resolve(data, offset, query.size)->data) : reply;
    }

    Reply transfer(const uvc_xu_control_query &query, guint8 *bytes)
    {
        const auto found = controls.find(query.selector);
        if (query.unit != 4 || found == controls.end())
            return {-1, ENOENT};
        const auto [length, info] = found->second;
        if (query.size != (query.query == GetLen ? 2 : query.query == GetInfo ? 1 : length))
            return {-1, ENOBUFS};
        if (query.query == SetCur)
            written = QByteArray(reinterpret_cast<char *>(bytes), query.size);
        else if (query.query == GetCur)
            std::fill_n(bytes, length, guint8('s'));
        else
            bytes[0] = guint8(query.query == GetLen ? length & 0xff : info);
        if (query.query == GetLen)
            bytes[1] = guint8(length >> 8);
        return {};
    }

    static inline const std::unique_ptr<UMockdevTestbed, decltype(&g_object_unref)> testbed{
        umockdev_testbed_new(), g_object_unref};
    UMockdevIoctlBase *const handler = umockdev_ioctl_base_new();
    const QByteArray serial;
    const QByteArray descriptors;
    QVector<QByteArray> devices; ///< in sysfs, parents first
    QByteArray captureNode;      ///< empty: unplugged
};
