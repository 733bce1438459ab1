#include "camerapanel.h"

#include "errortexts.h"
#include "faultkinds.h"
#include "simulatedcamera.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QSpinBox>

using namespace TrackingProtocol;

CameraPanel::CameraPanel(SimulatedCamera &camera)
    : QGroupBox("Simulated camera")
    , m_camera(camera)
{
    auto *settings = new QGridLayout;
    for (const Field field : settingFields) {
        auto *box = new QComboBox;
        m_values.at(field) = box;
        connect(box, QOverload<int>::of(&QComboBox::activated), this, [this, box, field] {
            m_camera.setValue(field, static_cast<quint8>(box->currentData().toInt()));
        });
        const int column = settings->columnCount();
        settings->addWidget(new QLabel(fieldName(field)), 0, column);
        settings->addWidget(box, 1, column);
        settings->setColumnStretch(column, 1);
    }
    auto *faults = new QGridLayout;
    addFaults(*faults);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(settings);
    layout->addLayout(faults);

    // Also emitted in the thread of the transfers; the slot runs in this one.
    connect(&camera, &SimulatedCamera::statusChanged, this, &CameraPanel::showStatus);
    showStatus();
}

void CameraPanel::addFaults(QGridLayout &grid)
{
    const Faults present = m_camera.faults();
    for (int fault = 0; fault < Fault::Count; ++fault) {
        const FaultKind &kind = faultKinds.at(fault);
        const QString title(kind.title);
        const QString explanation(kind.explanation);
        const int column = grid.columnCount();
        QWidget *control = nullptr;
        if (kind.takes == FaultKind::Nothing) {
            auto *box = new QCheckBox(title);
            box->setChecked(present.at(fault) != noFault);
            connect(box, &QCheckBox::toggled, this,
                    [this, fault](bool on) { setFault(fault, on ? 1 : noFault); });
            control = box;
        } else if (kind.takes == FaultKind::Number) {
            auto *box = new QSpinBox;
            box->setRange(noFault, kind.maximum);
            box->setSpecialValueText("off");
            box->setSuffix(kind.unit);
            box->setSingleStep(kind.maximum > 1000 ? 50 : 1);
            box->setValue(present.at(fault));
            connect(box, QOverload<int>::of(&QSpinBox::valueChanged), this,
                    [this, fault](int value) { setFault(fault, value); });
            control = box;
        } else {
            auto *box = new QComboBox;
            box->addItem("off", noFault);
            for (const int error : faultErrors)
                box->addItem(errorName(error), error);
            box->setCurrentIndex(box->findData(present.at(fault)));
            connect(box, QOverload<int>::of(&QComboBox::activated), this,
                    [this, box, fault] { setFault(fault, box->currentData().toInt()); });
            control = box;
        }
        if (kind.takes != FaultKind::Nothing) {
            auto *label = new QLabel(title);
            label->setToolTip(explanation);
            grid.addWidget(label, 0, column);
        }
        control->setObjectName(QString("fault_") + kind.name);
        control->setToolTip(explanation);
        grid.addWidget(control, 1, column);
        grid.setColumnStretch(column, 1);
    }
}

void CameraPanel::setFault(int fault, int value)
{
    Faults faults = m_camera.faults();
    faults.at(fault) = value;
    m_camera.setFaults(faults);
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
