#include "ui/files/CsvExport.h"

#include "scanning/FileListCsv.h"

#include <QDir>
#include <QFileDialog>

namespace dorvik {

void exportCSV(QWidget* parent, const std::vector<FileNodePtr>& nodes, const QString& baseName) {
    const QString path = QFileDialog::getSaveFileName(parent, QObject::tr("Export to CSV"),
                                                      QDir::home().filePath(baseName + ".csv"),
                                                      QObject::tr("CSV files (*.csv)"));
    if (path.isEmpty()) {
        return;
    }
    writeFileListCsv(QFile::encodeName(path).toStdString(), nodes);
}

} // namespace dorvik
