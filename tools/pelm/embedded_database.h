/// The database that the program makes when it is given none: one file.
#pragma once

#include <filesystem>
#include <string>

namespace pelm::tool {

/// Where such a file stands when nobody says: `pelm` in the user's data folder, which
/// XDG_DATA_HOME names and which is ~/.local/share otherwise.
std::filesystem::path default_data_folder();

std::string connection_string_of(const std::filesystem::path& file);

/// Makes the folder, the file and the component's tables where they are missing, and runs the SQL
/// of `seed` in tables that it made (an empty path: no SQL). All or nothing, also when several
/// programs do so at once. Raises UserError.
void make_embedded_database(const std::filesystem::path& file, const std::filesystem::path& seed);

}  // namespace pelm::tool
