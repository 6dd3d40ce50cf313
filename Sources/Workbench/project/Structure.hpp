#pragma once

#include <cstdint>
#include <optional>
#include <unordered_map>

#include "Workbench/step/Document.hpp"

namespace workbench {

/// Where the products of a model belong, by record id.
class ProductStructure {
  public:
    explicit ProductStructure(const step::Document& document);

    /// The storey, space, building or site that contains the product itself.
    std::optional<uint64_t> ContainerOf(uint64_t product) const;
    /// The assembly, stair, roof or spatial parent that it is a part of.
    std::optional<uint64_t> WholeOf(uint64_t product) const;
    /// The wall or slab in whose opening it sits.
    std::optional<uint64_t> HostOf(uint64_t product) const;
    /// The container of the product, else of its host or of the whole that it belongs to.
    std::optional<uint64_t> EffectiveContainerOf(uint64_t product) const;
    /// The nearest of the product's containers (itself included) that is a storey.
    std::optional<uint64_t> StoreyOf(uint64_t product) const;

  private:
    using Map = std::unordered_map<uint64_t, uint64_t>;
    const step::Document* document;
    Map containers, wholes, hosts;
};

}  // namespace workbench
