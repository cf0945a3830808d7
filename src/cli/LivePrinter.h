#pragma once

#include "cli/OutputFormat.h"

#include <QDateTime>
#include <QMetaObject>
#include <vector>

namespace kvx {
class GridModel;
}

namespace kvx::cli {

// Prints kvx live's passes over GridMode1's ticked rows: aligned text, CSV or JSON lines, each
// value with the time it arrived.
class LivePrinter {
public:
    // itemWord names the identifier column of the CSV heading ("PID" or "Item").
    LivePrinter(GridModel& grid, OutputFormat format, const QString& itemWord);
    ~LivePrinter();
    LivePrinter(const LivePrinter&) = delete;
    LivePrinter& operator=(const LivePrinter&) = delete;

    // Before a pass: the grid keeps a silent row's earlier value, so the values are blanked and
    // only what this pass writes is printed.
    void startPass();
    // After a pass: a ticked row without a value got no answer. A pass cut short by Ctrl+C
    // prints only its answered rows, the others were never asked.
    void printPass(long pass, bool cutShort);

private:
    GridModel& grid_;
    OutputFormat format_;
    std::size_t idWidth_ = 0;
    std::size_t descriptionWidth_ = 0;
    std::vector<QDateTime> arrived_;
    QMetaObject::Connection watch_;
};

} // namespace kvx::cli
