#pragma once

#include "APIEnvir.h"

#include "ACAPinc.h"
#include "Location.hpp"

/// The host's IFC export translators. Owns the handles that come with them.
class IfcExportTranslators {
  public:
    IfcExportTranslators() = default;
    ~IfcExportTranslators();
    IfcExportTranslators(const IfcExportTranslators&) = delete;
    IfcExportTranslators& operator=(const IfcExportTranslators&) = delete;

    /// Asks the host, once; returns its error.
    GSErrCode Load();

    /// The host's default translator; valid as long as this object. Throws when the host has none.
    const API_IFCTranslatorIdentifier& First() const { return translators[0]; }

  private:
    GS::Array<API_IFCTranslatorIdentifier> translators;
};

/// Opens the IFC file in place of the open project; returns the host's error.
GSErrCode OpenProjectAsIfc(const IO::Location& location);

/// Saves as one IFC file what the parameters choose; returns the host's error.
GSErrCode SaveProjectAsIfc(const IO::Location& location, const API_SavePars_Ifc& ifcPars);
