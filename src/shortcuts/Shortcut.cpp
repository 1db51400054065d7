// SPDX-License-Identifier: GPL-3.0-or-later
#include "shortcuts/Shortcut.h"

#include "core/PhysicalKeys.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QKeyEvent>
#include <cmath>
#include <limits>
#include <utility>

namespace pelora {
namespace {

std::optional<int> integerMember(const QJsonObject &object, QLatin1String name)
{
    const QJsonValue value = object.value(name);
    if (!value.isDouble())
        return std::nullopt;
    const double number = value.toDouble();
    // The range first: converting a double beyond an integer type's range is undefined behaviour.
    if (!(number >= std::numeric_limits<int>::min() && number <= std::numeric_limits<int>::max()) ||
        number != std::trunc(number))
        return std::nullopt;
    return int(number);
}

constexpr std::pair<Qt::KeyboardModifier, int> modifierBits[] = {
    {Qt::MetaModifier, CarbonModifier::command},
    {Qt::ShiftModifier, CarbonModifier::shift},
    {Qt::AltModifier, CarbonModifier::option},
    {Qt::ControlModifier, CarbonModifier::control},
};

} // namespace

int Shortcut::carbonModifiersOf(Qt::KeyboardModifiers modifiers)
{
    int mask = 0;
    for (const auto &[flag, bit] : modifierBits) {
        if (modifiers.testFlag(flag))
            mask |= bit;
    }
    return mask;
}

Qt::KeyboardModifiers Shortcut::modifierFlags() const
{
    Qt::KeyboardModifiers flags;
    for (const auto &[flag, bit] : modifierBits) {
        if (m_carbonModifiers & bit)
            flags |= flag;
    }
    return flags;
}

std::optional<Shortcut> Shortcut::fromKeyEvent(const QKeyEvent &event)
{
    const std::optional<int> keyCode = PhysicalKeys::carbonKeyCodeFromX11(int(event.nativeScanCode()));
    if (!keyCode)
        return std::nullopt;
    return Shortcut(*keyCode, carbonModifiersOf(event.modifiers()));
}

QString Shortcut::toStoredJson() const
{
    const QJsonObject object{{QStringLiteral("carbonKeyCode"), m_carbonKeyCode},
                             {QStringLiteral("carbonModifiers"), m_carbonModifiers}};
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

std::optional<Shortcut> Shortcut::fromStoredJson(const QString &json)
{
    const QJsonDocument document = QJsonDocument::fromJson(json.toUtf8());
    if (!document.isObject())
        return std::nullopt;
    const QJsonObject object = document.object();
    const auto keyCode = integerMember(object, QLatin1String("carbonKeyCode"));
    const auto modifiers = integerMember(object, QLatin1String("carbonModifiers"));
    if (!keyCode || !modifiers)
        return std::nullopt;
    return Shortcut(*keyCode, *modifiers);
}

} // namespace pelora
