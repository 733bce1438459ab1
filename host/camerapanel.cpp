#include "camerapanel.h"

#include "errortexts.h"
#include "faultkinds.h"
#include "simulatedcamera.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>

using namespace TrackingProtocol;

/// Adds a column with a box below its title.
static QComboBox *addBox(QGridLayout &grid, const QString &title)
{
    auto *box = new QComboBox;
    const int column = grid.columnCount();
    grid.addWidget(new QLabel(title), 0, column);
    grid.addWidget(box, 1, column);
    grid.setColumnStretch(column, 1);
    return box;
}

CameraPanel::CameraPanel(SimulatedCamera &camera)
    : QGroupBox("Simulated camera")
    , m_camera(camera)
{
    auto *settings = new QGridLayout;
    for (const Field field : settingFields) {
        auto *box = addBox(*settings, fieldName(field));
        m_values.at(field) = box;
        connect(box, QOverload<int>::of(&QComboBox::activated), this, [this, box, field] {
            m_camera.setValue(field, static_cast<quint8>(box->currentData().toInt()));
        });
    }
    auto *faults = new QGridLayout;
    addFaults(*faults);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(settings);
    layout->addLayout(faults);

    // Transfers emit this in their own thread; the slot runs in this one.
    connect(&camera, &SimulatedCamera::statusChanged, this, &CameraPanel::showStatus);
    showStatus();
}

void CameraPanel::addFaults(QGridLayout &grid)
{
    for (int fault = 0; fault < Fault::Count; ++fault) {
        const FaultKind &kind = faultKinds.at(fault);
        const int current = m_camera.faults().at(fault);
        QVector<int> values = faultChoices(fault);
        values.prepend(noFault);
        if (!values.contains(current))
            values += current;
        auto *box = addBox(grid, kind.title);
        box->setToolTip(kind.explanation);
        box->setObjectName("fault_" + QString(kind.usage).section('=', 0, 0));
        for (const int value : qAsConst(values))
            box->addItem(faultValueName(fault, value), value);
        box->setCurrentIndex(values.indexOf(current));
        connect(box, QOverload<int>::of(&QComboBox::activated), this, [this, box, fault] {
            Faults faults = m_camera.faults();
            faults.at(fault) = box->currentData().toInt();
            m_camera.setFaults(faults);
        });
    }
}

void CameraPanel::showStatus()
{
    const SimulatedCamera::Status status = m_camera.status();
    for (const Field field : settingFields) {
        const quint8 current = status.at(field);
        QVector<quint8> offered = knownValues(field);
        // Offer an unknown value only while the camera has it.
        if (!offered.contains(current))
            offered += current;
        QComboBox *const box = m_values.at(field);
        box->clear();
        for (const quint8 value : qAsConst(offered))
            box->addItem(valueName(field, value), value);
        box->setCurrentIndex(offered.indexOf(current));
    }
}
