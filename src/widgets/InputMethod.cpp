#include "widgets/InputMethod.h"

#include <QKeyEvent>
#include <QWidget>
#include <QWindow>

#include <private/qguiapplication_p.h>
#include <qpa/qplatforminputcontext.h>
#include <qpa/qplatformintegration.h>

void InputMethod::introduce(QWidget &field)
{
    QGuiApplicationPrivate *application = QGuiApplicationPrivate::instance();
    QWindow *window = field.window()->windowHandle();
    if (!window || QGuiApplication::focusWindow())
        return;
    QGuiApplicationPrivate::focus_window = window;
    application->_q_updateFocusObject(&field);
    QGuiApplicationPrivate::focus_window = nullptr;
    application->_q_updateFocusObject(nullptr);
}

bool InputMethod::takes(const QKeyEvent &event)
{
    QPlatformInputContext *context = QGuiApplicationPrivate::platformIntegration()->inputContext();
    return context && context->filterEvent(&event);
}
