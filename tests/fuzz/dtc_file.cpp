// Feeds arbitrary bytes to the trouble-code file loader as "SAE OBD II CODES.dat": whatever the
// file holds, the load ends with a count, the table keeps its size, and a failure is a box.
#include "data/DtcDescriptions.h"
#include "session/Shell.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

class QuietShell : public kvx::Shell {
public:
    void messageBox(const std::string&, const std::string&, kvx::MessageIcon) override {}
    void processEvents() override {}
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static QTemporaryDir folder;
    static const QString path = QDir(folder.path()).filePath(kvx::data::kDtcFileName);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return 0;
    file.write(reinterpret_cast<const char*>(data), static_cast<qint64>(size));
    file.close();

    std::vector<std::string> table;
    QuietShell shell;
    const int count = kvx::data::LoadDtcDescriptions(folder.path().toStdString(), table, shell);
    if (count < 0 || count > static_cast<int>(size) || table.size() != kvx::data::kDtcTableSize)
        std::abort();
    return 0;
}
