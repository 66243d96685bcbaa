// The one QApplication of a test program, on the offscreen platform: no display needed.
#pragma once

#include <QApplication>

namespace folio::test {

inline QApplication& qt_anwendung() {
    static int argc = 1;
    static char name[] = "folio-tests";
    static char* argv[] = {name, nullptr};
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Made once and never destroyed: Qt's own globals may be gone at the program's exit.
    static QApplication* anwendung = new QApplication(argc, argv);
    return *anwendung;
}

} // namespace folio::test
