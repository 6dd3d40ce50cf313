#pragma once

#include "APIEnvir.h"

#include "ACAPinc.h"

/// Fills in the add-on's name and description. The add-on is loaded at start-up and stays, so that no
/// notification is missed.
API_AddonType __ACDLL_CALL CheckEnvironment(API_EnvirParams* envir);

/// Registers the menu with its one command.
GSErrCode __ACDLL_CALL RegisterInterface();

/// Installs the menu handler, the palette callback, the selection and the project notification, in this
/// order. Returns the first error; what follows it is not attempted.
GSErrCode __ACENV_CALL Initialize();

/// Nothing to free: the palette goes with the add-on's image.
GSErrCode __ACENV_CALL FreeData();

/// Shows the palette (creating it when there is none), or hides it when it is visible.
GSErrCode __ACENV_CALL MenuCommandHandler(const API_MenuParams* menuParams);
