#include "Workbench/desktop/ScriptValues.hpp"

#include <cmath>
#include <limits>

namespace workbench {

namespace {

GS::Ref<DG::JSBase> FromNumber(double number) {
    const bool whole = std::floor(number) == number && number >= std::numeric_limits<Int32>::min() &&
                       number <= std::numeric_limits<Int32>::max();
    if (whole) return new DG::JSValue(static_cast<Int32>(number));
    return new DG::JSValue(number);
}

QVariant FromScalar(const DG::JSValue& value) {
    switch (value.GetType()) {
        case DG::JSValue::BOOL:
            return value.GetBool();
        case DG::JSValue::INTEGER:
            return value.GetInteger();
        case DG::JSValue::UINTEGER:
            return value.GetUInteger();
        case DG::JSValue::DOUBLE:
            return value.GetDouble();
        case DG::JSValue::STRING:
            return ToQString(value.GetString());
        default:
            return {};
    }
}

}  // namespace

GS::Ref<DG::JSBase> ToScriptValue(const QVariant& value) {
    switch (value.typeId()) {
        case QMetaType::Bool:
            return new DG::JSValue(value.toBool());
        case QMetaType::Int:
        case QMetaType::LongLong:
        case QMetaType::Double:
            return FromNumber(value.toDouble());
        case QMetaType::QString:
            return new DG::JSValue(ToUniString(value.toString()));
        case QMetaType::QVariantList: {
            auto* array = new DG::JSArray();
            GS::Ref<DG::JSBase> owner(array);
            for (const QVariant& item : value.toList())
                array->AddItem(ToScriptValue(item));
            return owner;
        }
        case QMetaType::QVariantMap: {
            auto* object = new DG::JSObject();
            GS::Ref<DG::JSBase> owner(object);
            const QVariantMap items = value.toMap();
            for (auto item = items.begin(); item != items.end(); ++item) {
                object->AddItem(ToUniString(item.key()), ToScriptValue(item.value()));
            }
            return owner;
        }
        default:
            return nullptr;
    }
}

QVariant FromScriptValue(const GS::Ref<DG::JSBase>& value) {
    const DG::JSBase* base = value;
    if (const auto* scalar = dynamic_cast<const DG::JSValue*>(base)) return FromScalar(*scalar);
    if (const auto* array = dynamic_cast<const DG::JSArray*>(base)) {
        QVariantList items;
        for (const GS::Ref<DG::JSBase>& item : array->GetItemArray())
            items.append(FromScriptValue(item));
        return items;
    }
    return {};
}

QString ToQString(const GS::UniString& text) {
    return QString::fromUtf8(text.ToCStr(0, MaxUSize, CC_UTF8).Get());
}

GS::UniString ToUniString(const QString& text) {
    return GS::UniString(text.toUtf8().constData(), CC_UTF8);
}

}  // namespace workbench
