#pragma once

#include <QByteArray>
#include <QSemaphore>
#include <QVector>

#include <map>
#include <memory>
#include <umockdev.h>
#include <utility>

struct uvc_xu_control_query;

enum Query { SetCur = 0x01, GetCur = 0x81, GetLen = 0x85, GetInfo = 0x86 };

using Testbed = std::unique_ptr<UMockdevTestbed, decltype(&g_object_unref)>;

/// A camera of umockdev's: a capture node, a metadata node, and the controls of unit 4.
class MockCamera
{
public:
    struct Control
    {
        int length = 60;
        int info = 3;
        QByteArray value = {};
    };
    struct Reply ///< 0: as a driver would
    {
        int result = 0;
        int error = 0;
        int delay = 0; ///< milliseconds
    };

    /// To be plugged in.
    MockCamera(const Testbed &testbed, QByteArray serial, QByteArray descriptors);
    ~MockCamera();
    Q_DISABLE_COPY(MockCamera)

    /// Its nodes are /dev/video<number> and the next one, its port is always the same.
    void plugIn(int number);

    /// A transfer that is under way fails, too.
    void unplug();

    void setControl(int selector, const Control &control);
    void setReply(int query, int selector, const Reply &reply);

    /// Blocks until a transfer that has a delay has begun.
    void awaitTransfer() { m_begun.acquire(); }

    /// How often it was tried to set a control.
    int writes() const;

private:
    void describe(const QByteArray &text);
    static gboolean handle(UMockdevIoctlBase *handler, UMockdevIoctlClient *client, void *self);
    Reply answer(UMockdevIoctlClient *client);
    Reply transfer(const uvc_xu_control_query &query, guint8 *bytes);

    UMockdevTestbed *const m_testbed;
    UMockdevIoctlBase *const m_handler = umockdev_ioctl_base_new();
    const QByteArray m_serial;
    const QByteArray m_descriptors;
    QVector<QByteArray> m_devices; ///< in sysfs, parents first
    QVector<QByteArray> m_nodes;
    QSemaphore m_begun;

    // Requests come in a thread of umockdev's, so a mutex guards what follows.
    QByteArray m_captureNode;
    bool m_gone = true;
    std::map<int, Control> m_controls = {{7, {}}, {8, {60, 1, QByteArray(60, 's')}}};
    std::map<std::pair<int, int>, Reply> m_replies; ///< by query and selector
    int m_writes = 0;
};
