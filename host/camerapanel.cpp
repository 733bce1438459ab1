#include "camerapanel.h"

#include "errortexts.h"
#include "faultkinds.h"
#include "simulatedcamera.h"
#include "transfertext.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QGridLayout>
#include <QLabel>

using namespace TrackingProtocol;

/// Adds a box below its title, in rows of three.
static QComboBox *addBox(QGridLayout &grid, const QString &title)
{
    constexpr int boxesPerRow = 3;
    auto *box = new QComboBox;
    // Let a narrow window cut off long values.
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    box->setMinimumContentsLength(3);
    auto *label = new QLabel(title);
    label->setBuddy(box);
    const int place = grid.count() / 2;
    const int column = place % boxesPerRow;
    grid.addWidget(label, place / boxesPerRow * 2, column);
    grid.addWidget(box, place / boxesPerRow * 2 + 1, column);
    grid.setColumnStretch(column, 1);
    return box;
}

CameraPanel::CameraPanel(SimulatedCamera &camera)
    : QGroupBox(tr("Simulated camera"))
    , m_camera(camera)
{
    auto *grid = new QGridLayout(this);
    for (const Field field : settingFields) {
        auto *box = addBox(*grid, inWindowLanguage(fieldName(field)));
        m_values.at(field) = box;
        connect(box, QOverload<int>::of(&QComboBox::activated), this, [this, box, field] {
            m_camera.setValue(field, static_cast<quint8>(box->currentData().toInt()));
        });
    }
    addFaults(*grid);
    grid->setRowStretch(grid->rowCount(), 1);

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
        auto *box = addBox(grid, QCoreApplication::translate("FaultKind", kind.title));
        box->setToolTip(QCoreApplication::translate("FaultKind", kind.explanation));
        box->setObjectName("fault_" + QString(kind.usage).section('=', 0, 0));
        for (const int value : qAsConst(values))
            box->addItem(inWindowLanguage(faultValueName(fault, value)), value);
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
        QComboBox *const box = m_values.at(field);
        // Change the entries in place: the user may be choosing from the open list.
        const QVector<quint8> known = knownValues(field);
        for (int i = box->count(); i < known.size(); ++i)
            box->addItem(inWindowLanguage(valueName(field, known[i])), known[i]);
        if (box->findData(current) < 0)
            box->addItem(inWindowLanguage(valueName(field, current)), current);
        box->setCurrentIndex(box->findData(current));
        // Offer an unknown value only while the camera has it.
        const int offered = known.size() + (known.contains(current) ? 0 : 1);
        while (box->count() > offered)
            box->removeItem(known.size());
    }
}
