#include "mockcamera.h"

#include <QFile>
#include <QThread>
#include <linux/uvcvideo.h>
#include <linux/videodev2.h>

#include <cerrno>
#include <cstring>
#include <mutex>

/// One for all cameras: the thread sanitizer knows this kind, made before any thread, and does not
/// see that umockdev hands a camera over to its own.
static std::mutex mutex;

MockCamera::MockCamera(const Testbed &testbed, QByteArray serial, QByteArray descriptors)
    : m_testbed(testbed.get())
    , m_serial(std::move(serial))
    , m_descriptors(std::move(descriptors))
{
    g_signal_connect(m_handler, "handle-ioctl", G_CALLBACK(handle), this);
}

MockCamera::~MockCamera()
{
    unplug();
    g_object_unref(m_handler);
}

void MockCamera::plugIn(int number)
{
    {
        const std::lock_guard locker(mutex);
        m_gone = false;
        m_captureNode = "/dev/video" + QByteArray::number(number);
    }
    describe("P: /devices/1-2.3\nE: SUBSYSTEM=usb\nA: idVendor=12ab\nA: idProduct=00cd\n"
             "A: serial=" +
             m_serial + "\nH: descriptors=" + m_descriptors.toHex() + "\n");
    describe("P: /devices/1-2.3/1-2.3:1.0\nE: SUBSYSTEM=usb\n");
    for (const int node : {number, number + 1}) {
        const QByteArray name = "video" + QByteArray::number(node);
        describe("P: /devices/1-2.3/1-2.3:1.0/video4linux/" + name + "\nN: " + name +
                 "=00\nE: DEVNAME=/dev/" + name +
                 "\nE: SUBSYSTEM=video4linux\n"
                 "L: device=../../../1-2.3:1.0\n");
        m_nodes << "/dev/" + name;
        umockdev_testbed_attach_ioctl(m_testbed, m_nodes.last(), m_handler, nullptr);
    }
}

void MockCamera::unplug()
{
    {
        const std::lock_guard locker(mutex);
        m_gone = true;
    }
    while (!m_devices.isEmpty())
        umockdev_testbed_remove_device(m_testbed, "/sys" + m_devices.takeLast());
    const std::unique_ptr<char, decltype(&g_free)> root(umockdev_testbed_get_root_dir(m_testbed),
                                                        g_free);
    while (!m_nodes.isEmpty()) {
        const QByteArray node = m_nodes.takeLast();
        QFile::remove(root.get() + QString(node));
        umockdev_testbed_detach_ioctl(m_testbed, node, nullptr);
    }
}

void MockCamera::setControl(int selector, const Control &control)
{
    const std::lock_guard locker(mutex);
    m_controls[selector] = control;
}

void MockCamera::setReply(int query, int selector, const Reply &reply)
{
    const std::lock_guard locker(mutex);
    m_replies[{query, selector}] = reply;
}

int MockCamera::writes() const
{
    const std::lock_guard locker(mutex);
    return m_writes;
}

void MockCamera::describe(const QByteArray &text)
{
    if (!umockdev_testbed_add_from_string(m_testbed, text, nullptr))
        qFatal("umockdev does not understand:\n%s", text.constData());
    m_devices << text.mid(3, text.indexOf('\n') - 3);
}

gboolean MockCamera::handle(UMockdevIoctlBase * /*handler*/, UMockdevIoctlClient *client,
                            void *self)
{
    const Reply reply = static_cast<MockCamera *>(self)->answer(client);
    umockdev_ioctl_client_complete(client, reply.result, reply.error);
    return TRUE;
}

MockCamera::Reply MockCamera::answer(UMockdevIoctlClient *client)
{
    const auto resolve = [](UMockdevIoctlData *data, size_t offset, size_t size) {
        return std::unique_ptr<UMockdevIoctlData, decltype(&g_object_unref)>(
            umockdev_ioctl_data_resolve(data, offset, size, nullptr), g_object_unref);
    };
    std::unique_lock locker(mutex);
    UMockdevIoctlData *const argument = umockdev_ioctl_client_get_arg(client);
    const auto request = umockdev_ioctl_client_get_request(client);
    const bool isCapture = m_captureNode == umockdev_ioctl_client_get_devnode(client);
    if (request == VIDIOC_QUERYCAP) {
        v4l2_capability capability = {};
        qstrcpy(reinterpret_cast<char *>(capability.card), "A\033camera");
        qstrcpy(reinterpret_cast<char *>(capability.driver), "uvcvideo");
        qstrcpy(reinterpret_cast<char *>(capability.bus_info), "usb-0000:00:14.0-2.3");
        capability.device_caps = isCapture ? V4L2_CAP_VIDEO_CAPTURE : V4L2_CAP_META_CAPTURE;
        std::memcpy(resolve(argument, 0, sizeof capability)->data, &capability, sizeof capability);
        return {};
    }
    if (request != UVCIOC_CTRL_QUERY || !isCapture)
        return {-1, ENOTTY};
    uvc_xu_control_query query;
    const auto data = resolve(argument, 0, sizeof query);
    std::memcpy(&query, data->data, sizeof query);
    const auto bytes = resolve(data.get(), offsetof(uvc_xu_control_query, data), query.size);

    const Reply reply = m_replies[{query.query, query.selector}];
    if (reply.delay > 0) {
        locker.unlock();
        m_begun.release();
        QThread::msleep(ulong(reply.delay));
        locker.lock();
    }
    m_writes += query.query == SetCur;
    if (m_gone)
        return {-1, ENODEV};
    return reply.result == 0 ? transfer(query, bytes->data) : reply;
}

/// Called with the mutex locked.
MockCamera::Reply MockCamera::transfer(const uvc_xu_control_query &query, guint8 *bytes)
{
    const auto found = m_controls.find(query.selector);
    if (query.unit != 4 || found == m_controls.end())
        return {-1, ENOENT};
    Control &control = found->second;
    if (query.size != (query.query == GetLen ? 2 : query.query == GetInfo ? 1 : control.length))
        return {-1, ENOBUFS};
    if (query.query == SetCur) {
        control.value = QByteArray(reinterpret_cast<char *>(bytes), query.size);
        return {};
    }
    const QByteArray answer =
        query.query == GetLen
            ? QByteArray(1, char(control.length & 0xff)) + char(control.length >> 8)
        : query.query == GetInfo ? QByteArray(1, char(control.info))
                                 : control.value.leftJustified(control.length, 's', true);
    std::copy(answer.cbegin(), answer.cend(), bytes);
    return {};
}
