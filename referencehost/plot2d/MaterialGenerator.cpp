#include "MaterialGenerator.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <QVariant>
#include <QWidget>

namespace Brennvik {

const char* const MaterialGeneratorProperty = "MaterialGenerator";

namespace {
QMetaObject::Connection& destroyedConnection()
{
    static QMetaObject::Connection connection;
    return connection;
}
} // namespace

void setMaterialGeneratorWindow(QWidget* window)
{
    QCoreApplication* application = QCoreApplication::instance();
    if (!application)
        return;
    QObject::disconnect(destroyedConnection());
    if (!window) {
        application->setProperty(MaterialGeneratorProperty, QVariant());
        return;
    }
    application->setProperty(MaterialGeneratorProperty, QVariant::fromValue(window));
    // The property holds a raw pointer: it must not outlive the window.
    destroyedConnection() = QObject::connect(window, &QObject::destroyed, application, [application]() {
        application->setProperty(MaterialGeneratorProperty, QVariant());
    });
}

QWidget* materialGeneratorWindow()
{
    QCoreApplication* application = QCoreApplication::instance();
    return application ? application->property(MaterialGeneratorProperty).value<QWidget*>() : nullptr;
}

} // namespace Brennvik
