// SPDX-License-Identifier: MIT
// Copying or rendering documents into a PDF file.
#include "host/PdfFileOutput.h"

#include <QAbstractTextDocumentLayout>
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QFontDatabase>
#include <QImageReader>
#include <QMimeDatabase>
#include <QPainter>
#include <QPrinter>
#include <QSaveFile>
#include <QStringDecoder>
#include <QTextDocument>

#include <utility>

namespace pdehost {
namespace {

enum class Kind { Pdf, Text, Picture };

// The messages' translation context.
class PdfFileOutput
{
    Q_DECLARE_TR_FUNCTIONS(PdfFileOutput)
};

QString decodedText(const QByteArray &bytes)
{
    QStringDecoder utf8(QStringDecoder::Utf8);
    const QString text = utf8(bytes);
    return utf8.hasError() ? QString::fromLocal8Bit(bytes) : text;
}

bool copyFile(const QString &from, const QString &to, QString *error)
{
    QFile source(from);
    QSaveFile target(to);
    if (!source.open(QIODevice::ReadOnly)) {
        *error = PdfFileOutput::tr("%1: cannot be read: %2").arg(from, source.errorString());
        return false;
    }
    if (!target.open(QIODevice::WriteOnly) || target.write(source.readAll()) < 0 || !target.commit()) {
        *error = PdfFileOutput::tr("%1: cannot be written: %2").arg(to, target.errorString());
        return false;
    }
    return true;
}

// Draws the text's pages, each after a new page unless it is the first.
void drawText(const QString &text, QPrinter &printer, QPainter &painter, bool *first)
{
    QTextDocument document;
    document.documentLayout()->setPaintDevice(&printer);
    document.setDefaultFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    document.setPlainText(text);
    const QSizeF page = printer.pageRect(QPrinter::DevicePixel).size();
    document.setPageSize(page);
    for (int i = 0; i < document.pageCount(); ++i) {
        if (!std::exchange(*first, false))
            printer.newPage();
        painter.save();
        painter.translate(0, -i * page.height());
        document.drawContents(&painter, QRectF(QPointF(0, i * page.height()), page));
        painter.restore();
    }
}

void drawPicture(const QImage &picture, QPrinter &printer, QPainter &painter, bool *first)
{
    if (!std::exchange(*first, false))
        printer.newPage();
    const QSizeF page = printer.pageRect(QPrinter::DevicePixel).size();
    const QSizeF size = QSizeF(picture.size()).scaled(page, Qt::KeepAspectRatio);
    painter.drawImage(QRectF(QPointF(0, 0), size), picture);
}

} // namespace

bool writeDocumentsToPdf(const QStringList &files, QPrinter &printer, QString *error)
{
    const QString output = printer.outputFileName();
    if (output.isEmpty() || QFileInfo(output).isDir()) {
        *error = PdfFileOutput::tr("no file to print to was chosen");
        return false;
    }
    const QMimeDatabase types;
    QList<Kind> kinds;
    for (const QString &file : files) {
        if (!QFileInfo(file).isReadable()) {
            *error = PdfFileOutput::tr("%1: cannot be read").arg(file);
            return false;
        }
        const QMimeType type = types.mimeTypeForFile(file);
        if (type.inherits(QStringLiteral("application/pdf"))) {
            if (files.size() > 1) {
                *error = PdfFileOutput::tr("%1: a PDF file can be printed to a file only on its own").arg(file);
                return false;
            }
            return copyFile(file, output, error);
        }
        if (!QImageReader::imageFormat(file).isEmpty())
            kinds.append(Kind::Picture);
        else if (type.inherits(QStringLiteral("text/plain")))
            kinds.append(Kind::Text);
        else {
            *error = PdfFileOutput::tr("%1: a %2 file cannot be printed to a PDF file (only PDF, text and picture files can)")
                         .arg(file, type.comment());
            return false;
        }
    }

    QPainter painter;
    if (!painter.begin(&printer)) {
        *error = PdfFileOutput::tr("%1: cannot be written").arg(output);
        return false;
    }
    bool first = true;
    for (qsizetype i = 0; i < files.size(); ++i) {
        QFile file(files[i]);
        switch (kinds[i]) {
        case Kind::Text:
            if (!file.open(QIODevice::ReadOnly)) {
                painter.end();
                *error = PdfFileOutput::tr("%1: cannot be read: %2").arg(files[i], file.errorString());
                return false;
            }
            drawText(decodedText(file.readAll()), printer, painter, &first);
            break;
        case Kind::Picture:
            drawPicture(QImage(files[i]), printer, painter, &first);
            break;
        case Kind::Pdf:
            break;
        }
    }
    painter.end();
    return true;
}

} // namespace pdehost
