#pragma once

#include <string_view>
#include <vector>

namespace workbench {

/// A product's class and all that it is a kind of, from near to far: "IFCWALLSTANDARDCASE", "IFCWALL", ...,
/// "IFCROOT". In upper case, as the type must be; empty for what is no product. The schema, "IFC2X3", decides
/// where classes have moved; one that only got another name is told under both.
std::vector<std::string_view> KindsOf(std::string_view type, std::string_view schema);

}  // namespace workbench
