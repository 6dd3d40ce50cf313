#pragma once

#include <QVariant>

#include "DGModule.hpp"

namespace workbench {

/// A value of the page as the host's script value: whole numbers of 32 bits are integers, others doubles;
/// null and undefined are an empty reference.
GS::Ref<DG::JSBase> ToScriptValue(const QVariant& value);

/// And back. Functions have no counterpart in the page and become null.
QVariant FromScriptValue(const GS::Ref<DG::JSBase>& value);

QString ToQString(const GS::UniString& text);
GS::UniString ToUniString(const QString& text);

}  // namespace workbench
