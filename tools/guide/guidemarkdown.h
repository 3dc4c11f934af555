#pragma once

#include <QByteArray>
#include <QString>

/// The guide as Markdown, from its HTML, which has to be well formed and to keep to these elements:
/// headings, paragraphs, lists, tables with a row of heads, preformatted text, line breaks, anchors,
/// links, pictures, bold, italic, code. Addresses of pictures, "qrc:/images/NAME", become
/// `pictures` + NAME. Raises `ValueError` for anything else.
QString guideMarkdown(const QByteArray& html, const QString& pictures);
