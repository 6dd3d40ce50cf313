#pragma once

#include "APIEnvir.h"

#include "ACAPinc.h"

#include <optional>

// Elements of the open project. No value: the host did not answer, or has no such thing.

/// GUIDs of the elements of every type that pass the filter (APIFilt_None: all).
std::optional<GS::Array<API_Guid>> ListElements(API_ElemFilterFlags filter);

/// The whole record of an element, without memo.
std::optional<API_Element> GetElement(const API_Guid& guid);

/// Bounds of the element's body in the 3D model, in metres.
std::optional<API_Box3D> GetElementBounds(const API_Guid& guid);
