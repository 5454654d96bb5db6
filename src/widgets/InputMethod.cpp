#include "widgets/InputMethod.h"

#include <QKeyEvent>
#include <QWidget>
#include <QWindow>

#include <private/qguiapplication_p.h>
#include <qpa/qplatforminputcontext.h>
#include <qpa/qplatformintegration.h>

namespace {

QPlatformInputContext *inputContext()
{
    return QGuiApplicationPrivate::platformIntegration()->inputContext();
}

/// Others serve a program as a whole. They need no introduction, and might take it for a change of
/// focus in the midst of what is being written in another program.
bool knowsWindows(const QPlatformInputContext *context)
{
    return context && QByteArrayView(context->metaObject()->className()).contains("Fcitx");
}

} // namespace

void InputMethod::introduce(QWidget &field)
{
    QWindow *window = field.window()->windowHandle();
    if (!window || QGuiApplication::focusWindow() || !knowsWindows(inputContext()))
        return;
    // An input method is told of a field together with the window that has the focus, and there is no
    // public way to name one that has not. Nobody but the input method hears of it.
    QGuiApplicationPrivate *application = QGuiApplicationPrivate::instance();
    QGuiApplicationPrivate::focus_window = window;
    application->_q_updateFocusObject(&field);
    QGuiApplicationPrivate::focus_window = nullptr;
    application->_q_updateFocusObject(nullptr);
}

bool InputMethod::takes(const QKeyEvent &event)
{
    QPlatformInputContext *context = inputContext();
    return context && context->filterEvent(&event);
}
