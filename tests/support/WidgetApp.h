#pragma once

#include <QApplication>

namespace kvx::test {

// One QApplication for a whole window-test program. It is never destroyed: tearing it down
// after Qt's own statics at exit crashes.
inline QApplication& widgetApp()
{
    static int argc = 1;
    static char name[] = "kvx_window_tests";
    static char* argv[] = {name, nullptr};
    static QApplication* app = new QApplication(argc, argv);
    return *app;
}

} // namespace kvx::test
