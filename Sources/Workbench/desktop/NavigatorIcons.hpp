#pragma once

#include <QIcon>

#include "Workbench/navigator/PublisherSets.hpp"

namespace workbench {

/// A small picture of what an item shows: a folder, a plan, a view, a model.
QIcon IconOf(PublisherItem::Kind kind);
/// Of a publisher set.
QIcon SetIcon();

}  // namespace workbench
