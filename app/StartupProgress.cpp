#include "StartupProgress.h"

#include <QCoreApplication>
#include <QLabel>
#include <QProgressBar>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>

namespace Brennvik {

StartupProgress::StartupProgress(const QString& text, QWidget* parent)
    : QWidget(parent, Qt::SplashScreen)
    , m_label(new QLabel(text, this))
    , m_bar(new QProgressBar(this))
{
    setObjectName(QStringLiteral("startupProgress"));
    setWindowTitle(QCoreApplication::applicationName());
    m_bar->setRange(0, 100);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_label);
    layout->addWidget(m_bar);
    resize(360, sizeHint().height());
}

void StartupProgress::report(std::size_t done, std::size_t total)
{
    const int percent = total == 0 ? 100 : static_cast<int>(std::min(done, total) * 100 / total);
    if (isVisible() && percent == m_bar->value())
        return;
    // Set before the window shows, so that its first frame shows it too.
    m_bar->setValue(percent);
    if (!isVisible()) {
        if (const QScreen* shownOn = screen())
            move(shownOn->availableGeometry().center() - rect().center());
        show();
    }
    // No event loop runs while the model is made: paint now, take no input.
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

} // namespace Brennvik
