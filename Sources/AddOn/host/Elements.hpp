#pragma once

#include "APIEnvir.h"

#include "ACAPinc.h"

#include <functional>
#include <optional>

// Elements of the open project. No value: the host did not answer, or has no such thing.

/// GUIDs of the elements of every type that pass the filter (APIFilt_None: all).
std::optional<GS::Array<API_Guid>> ListElements(API_ElemFilterFlags filter);

/// The whole record of an element, without memo.
std::optional<API_Element> GetElement(const API_Guid& guid);

/// Creates an element like the one that the record was read from, which may be of another project. Only
/// within an undoable command. Returns the host's error.
GSErrCode CreateElement(const API_Element& element);

/// Runs the body as one undoable command; returns the host's error, or the body's, after which nothing of it
/// stays.
GSErrCode RunUndoable(const GS::UniString& name, const std::function<GSErrCode()>& body);

/// Bounds of the element's body in the 3D model, in metres.
std::optional<API_Box3D> GetElementBounds(const API_Guid& guid);

/// The element's ID text as people see it; empty when it has none.
GS::UniString GetElementIdText(const API_Guid& guid);

struct IfcIdentifiers {
    API_Guid own;       // the host's
    API_Guid external;  // of the file that the element came with; null for none
};
std::optional<IfcIdentifiers> GetIfcIdentifiers(const API_Guid& guid);

/// Elements that came with this identifier; when there are none, those whose own it is.
GS::Array<API_Guid> FindElementsByIfcIdentifier(const API_Guid& identifier);

/// The selected elements, in the order of the selection.
GS::Array<API_Neig> GetSelection();
