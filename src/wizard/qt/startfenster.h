// The small windows of the frame on the screen: the splash `Start` while the wizard loads,
// and `Fortschrittfrm`, the progress of an upgrade, which comes up when the upgrade first
// touches it and goes when it is unloaded; Escape on it sets its flag.
#pragma once

#include <QDialog>
#include <QWidget>

class QLabel;
class QProgressBar;

namespace folio {
class StartForm;
}

namespace folio::qt {

class Startfenster : public QWidget {
    Q_OBJECT
public:
    explicit Startfenster(StartForm& form);
    void abgleichen();

private:
    StartForm& form_;
    QLabel* bild_ = nullptr;
    QLabel* titel_ = nullptr;
    QProgressBar* balken_ = nullptr;
};

class Fortschrittsdialog : public QDialog {
    Q_OBJECT
public:
    explicit Fortschrittsdialog(QWidget* parent = nullptr);
    void abgleichen();

protected:
    void keyPressEvent(QKeyEvent* ereignis) override;
    void reject() override {} // it goes when the upgrade unloads it

private:
    QLabel* info_ = nullptr;
    QProgressBar* balken_ = nullptr;
    QProgressBar* warten_ = nullptr;
};

} // namespace folio::qt
