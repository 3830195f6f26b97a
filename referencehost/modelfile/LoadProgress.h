#pragma once

#include <cstddef>
#include <functional>

namespace Brennvik {

/// Told how far the loading of a model file has come: \a done of \a total
/// steps. The reports only grow; the total is reported once, when the model
/// is complete, and a file that fails gets no report after its error.
using ModelFileProgress = std::function<void(std::size_t done, std::size_t total)>;

/// The reports of one load. Checking the text, parsing it and building the
/// items each take the share of the steps that they take of the time on a
/// large file. Steps are coarse, so that the reader may count in at every
/// byte block and every item and the callback still runs a few hundred times.
class LoadProgress
{
public:
    /// The steps of a whole load.
    static constexpr std::size_t Total = 1000;

    explicit LoadProgress(ModelFileProgress progress = {});

    /// Reports the first step: the load has begun.
    void started();
    /// \a done of \a total bytes of the text have been checked.
    void textChecked(std::size_t done, std::size_t total);
    /// The text is parsed; \a itemCount items are to be built from it.
    void textParsed(std::size_t itemCount);
    /// One more item is built.
    void itemBuilt()
    {
        if (++m_itemsBuilt >= m_nextItemReport)
            reportItems();
    }
    /// The model is complete: reports the total.
    void finished();

private:
    void reportItems();
    /// Reports \a step unless it was reached already.
    void reach(std::size_t step);

    ModelFileProgress m_progress;
    bool m_reportedAny = false;
    std::size_t m_reached = 0;
    std::size_t m_itemCount = 0;
    std::size_t m_itemsBuilt = 0;
    std::size_t m_nextItemReport = static_cast<std::size_t>(-1);
};

} // namespace Brennvik
