#pragma once

#include <QWidget>

#include <cstddef>

class QLabel;
class QProgressBar;

namespace Brennvik {

/// A small window that shows how far the making of a large model has come,
/// before the main window exists. Fed from the maker's own loop through
/// report(); it repaints there, as nothing else runs meanwhile.
class StartupProgress : public QWidget
{
    Q_OBJECT
public:
    explicit StartupProgress(const QString& text, QWidget* parent = nullptr);

    /// \a done of \a total steps are done: shows the window on the first call
    /// and repaints it whenever the percentage changes.
    void report(std::size_t done, std::size_t total);

    QProgressBar* progressBar() const { return m_bar; }

private:
    QLabel* m_label;
    QProgressBar* m_bar;
};

} // namespace Brennvik
