#pragma once

// Calling conventions of callbacks and entry points: the platform's default.
#define __ACENV_CALL  // NOLINT(bugprone-reserved-identifier): the host's name
#define __ACDLL_CALL  // NOLINT(bugprone-reserved-identifier): the host's name
