#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <unordered_set>

#include "APIdefs_Base.h"
#include "Workbench/exchange/merge/Draft.hpp"
#include "Workbench/exchange/merge/ModelUnits.hpp"

namespace workbench {

/// Rewrites a draft's numbers in the units of another project, and puts its products where they are in that
/// project's space.
class Conversion {
  public:
    /// `move` leads from the source's space to the target's, metres.
    Conversion(const ModelUnits& from, const ModelUnits& to, const std::optional<API_Tranmat>& move);

    /// `products`: all that come, with the spatial structure that comes with them.
    void Apply(Draft& draft, std::span<const uint64_t> products);

  private:
    bool Differs(ModelUnits::Kind kind) const;
    void ConvertNumbers(Draft& draft) const;
    void ConvertTrims(Draft& draft, uint64_t curve) const;
    void NameUnit(Draft& draft, uint64_t id, std::optional<ModelUnits::Kind> kind, size_t attribute) const;
    void Move(Draft& draft, std::span<const uint64_t> products) const;
    uint64_t MovedOrigin(Draft& draft) const;

    ModelUnits from, to;
    std::optional<double> scale, turn;  // factors of lengths and plane angles; nothing for 1
    std::optional<API_Tranmat> move;
};

/// From the space of one project to that of another, metres: both are laid on the map. Nothing when one of
/// them does not say where it is, when they name different coordinate systems, or when there is no
/// difference.
std::optional<API_Tranmat> MoveBetween(const Project& from, const Project& to);

}  // namespace workbench
