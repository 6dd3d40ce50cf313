#include "dialogs/PropertyNameDialog.hpp"
#include "palette/KestranePalette.hpp"

GS::UniString KestranePalette::GetNewPropertyName(const GS::Array<GS::UniString>& namesInUse) {
    PropertyNameDialog dialog(namesInUse);
    return dialog.Invoke() ? dialog.GetNewPropertyName() : GS::UniString();
}
