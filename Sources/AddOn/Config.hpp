#pragma once

// What a build fixes. The two addresses come from CMake (-DKESTRANE_API_BASE_URL=...,
// -DKESTRANE_WEB_APP_URL=...).

/// The service's API: scheme, host and path, without a trailing slash.
inline constexpr const char* apiBaseUrl = KESTRANE_API_BASE_URL;

/// The page that the palette's browser loads.
inline constexpr const char* webAppUrl = KESTRANE_WEB_APP_URL;

/// How every request to the service names its sender.
inline constexpr const char* clientName = "Kestrane Plugin Archicad";

inline constexpr const char* addOnVersion = "0.44.0.58128";

/// The host's main version that this add-on is built for.
inline constexpr const char* hostVersion = "26";
