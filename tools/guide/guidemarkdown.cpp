#include "guide/guidemarkdown.h"

#include "system/exception.h"

#include <QRegularExpression>
#include <QStringList>
#include <QXmlStreamReader>

namespace {

const char* const where = "QString guideMarkdown(const QByteArray&, const QString&)";

/// What a reader of Markdown would take for a mark.
QString escaped(QString text)
{
    return text.replace(QRegularExpression(R"(([\\*_`#<>|]))"), R"(\\1)");
}

class Converter
{
public:
    Converter(const QByteArray& html, const QString& pictures)
        : reader_(html)
        , pictures_(pictures)
    {}

    QString convert()
    {
        while (!reader_.atEnd()) {
            switch (reader_.readNext()) {
            case QXmlStreamReader::StartElement:
                open(reader_.name().toString());
                break;
            case QXmlStreamReader::EndElement:
                close(reader_.name().toString());
                break;
            case QXmlStreamReader::Characters:
                write(reader_.text().toString());
                break;
            default:
                break;
            }
        }
        if (reader_.hasError()) {
            raise<ValueError>(where, "Line " + std::to_string(reader_.lineNumber()) + ": " +
                                         reader_.errorString().toStdString());
        }
        return blocks_.join("\n\n") + "\n";
    }

private:
    QString attribute(const char* name) const
    {
        return reader_.attributes().value(QLatin1String(name)).toString();
    }

    bool isHeading(const QString& name) const
    {
        return name.size() == 2 && name[0] == 'h' && name[1].isDigit();
    }

    void open(const QString& name)
    {
        if (name == "head") {
            reader_.skipCurrentElement();
        } else if (name == "ul" || name == "ol") {
            endItem();
            lists_.append(name == "ol" ? 1 : 0);
        } else if (name == "pre") {
            preformatted_ = true;
        } else if (name == "b" || name == "th") {
            line_ += name == "b" ? "**" : "";
        } else if (name == "i") {
            line_ += "*";
        } else if (name == "code") {
            line_ += "`";
            code_ = true;
        } else if (name == "br") {
            line_ = line_.trimmed() + (cells_.isEmpty() && !inRow_ ? "  \n" : "<br>");
        } else if (name == "img") {
            line_ += "![" + attribute("alt") + "](" +
                     attribute("src").replace("qrc:/images/", pictures_) + ")";
        } else if (name == "a") {
            openAnchor();
        } else if (name == "tr") {
            inRow_ = true;
        } else if (name == "table") {
            rows_ = 0;
        } else if (!isHeading(name) &&
                   !QStringList({"html", "body", "p", "li", "td"}).contains(name)) {
            raise<ValueError>(where, "Line " + std::to_string(reader_.lineNumber()) +
                                         ": no element '" + name.toStdString() + "' is known");
        }
    }

    void openAnchor()
    {
        link_ = attribute("href");
        if (link_.isEmpty()) {
            line_ += "<a name=\"" + attribute("name") + "\"></a>";
        } else {
            line_ += "[";
        }
    }

    void close(const QString& name)
    {
        if (isHeading(name)) {
            line_ = QString(name[1].digitValue(), '#') + " " + line_.trimmed();
            endBlock();
        } else if (name == "p") {
            endBlock();
        } else if (name == "li") {
            endItem();
        } else if (name == "ul" || name == "ol") {
            lists_.removeLast();
            if (lists_.isEmpty()) {
                blocks_.append(items_.join("\n"));
                items_.clear();
            }
        } else if (name == "pre") {
            preformatted_ = false;
            blocks_.append("```\n" + line_.trimmed() + "\n```");
            line_.clear();
        } else if (name == "b") {
            line_ += "**";
        } else if (name == "i") {
            line_ += "*";
        } else if (name == "code") {
            line_ += "`";
            code_ = false;
        } else if (name == "a" && !link_.isEmpty()) {
            line_ += "](" + link_ + ")";
            link_.clear();
        } else if (name == "td" || name == "th") {
            cells_.append(line_.trimmed());
            line_.clear();
        } else if (name == "tr") {
            endRow();
        } else if (name == "table") {
            blocks_.append(items_.join("\n"));
            items_.clear();
        }
    }

    void write(QString text)
    {
        if (preformatted_) {
            line_ += text;
            return;
        }
        text.replace(QRegularExpression(R"(\s+)"), " ");
        if ((line_.isEmpty() || line_.endsWith('\n')) && text.startsWith(' ')) {
            text.remove(0, 1);
        }
        line_ += code_ ? text : escaped(text);
    }

    void endBlock()
    {
        if (!line_.trimmed().isEmpty()) {
            blocks_.append(line_.trimmed());
        }
        line_.clear();
    }

    void endItem()
    {
        if (lists_.isEmpty() || line_.trimmed().isEmpty()) {
            line_.clear();
            return;
        }
        int& number = lists_.last();
        const QString mark = number > 0 ? QString("%1. ").arg(number++) : "- ";
        items_.append(QString(3 * (lists_.size() - 1), ' ') + mark + line_.trimmed());
        line_.clear();
    }

    void endRow()
    {
        items_.append("| " + cells_.join(" | ") + " |");
        if (rows_++ == 0) {
            items_.append("|" + QString("---|").repeated(cells_.size()));
        }
        cells_.clear();
        inRow_ = false;
    }

    QXmlStreamReader reader_;
    QString pictures_;
    QStringList blocks_;
    QStringList items_; // of the list or table at hand
    QStringList cells_;
    QList<int> lists_; // the next number of each list that is open, 0 without numbers
    QString line_;
    QString link_;
    int rows_ = 0;
    bool inRow_ = false;
    bool preformatted_ = false;
    bool code_ = false;
};

} // namespace

QString guideMarkdown(const QByteArray& html, const QString& pictures)
{
    return Converter(html, pictures).convert();
}
