#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QHash>
#include <QtCore/QTranslator>

/// Translates by a catalogue that gettext compiled. Qt's own format, as gettext writes it, has no
/// room for texts such as "Open…". All texts are in one context.
class Catalogue : public QTranslator
{
    Q_OBJECT

public:
    using QTranslator::QTranslator;

    /// Replaces the texts by those of @p bytes, a little-endian catalogue. Bytes that are not a
    /// catalogue give no texts.
    void setBytes(const QByteArray &bytes);

    bool isEmpty() const override;
    /// Null for a text that is not in the catalogue.
    QString translate(const char *context, const char *text, const char *disambiguation,
                      int count) const override;

private:
    QHash<QByteArray, QString> m_texts;
};
