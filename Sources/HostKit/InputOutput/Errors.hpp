#pragma once

#include <system_error>

#include "FileSystem.hpp"

namespace hostkit {

// The host's code for an error of the system.
inline GSErrCode ToHostError(const std::error_code& error) {
    if (!error) return NoError;
    if (error == std::errc::no_such_file_or_directory) return IO::FileSystem::TargetNotFound;
    if (error == std::errc::file_exists) return IO::FileSystem::TargetExists;
    if (error == std::errc::permission_denied || error == std::errc::read_only_file_system ||
        error == std::errc::operation_not_permitted) {
        return IO::FileSystem::AccessDenied;
    }
    if (error == std::errc::not_a_directory || error == std::errc::is_a_directory ||
        error == std::errc::filename_too_long) {
        return IO::FileSystem::BadLocation;
    }
    return IO::FileSystem::Failed;
}

}  // namespace hostkit
