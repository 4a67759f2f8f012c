// What the fuzz targets that drive the library by name keep away from: the machine's files and
// its databases.
// - The classes that act on files (the file-system object and its streams, drives and folders,
//   and FileSystem) are never created: a generated name as short as "*" or "/" would let them
//   delete or overwrite real files (the fuzzers run in the checkout, in CI as root). What they
//   parse is fuzzed on its own: INI files (profile_fuzz) and version resources
//   (version_resource_fuzz).
// - The ODBC driver manager is pointed at an empty configuration, so a connection string names
//   no installed driver: a connection fails in the driver manager, and no driver is loaded that
//   would create database files or bring leaks of its own into the report.
#pragma once

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <ravelin/base/text.hpp>
#include <ravelin/frame/member_table.hpp>
#include <string>

namespace ravelin::fuzzing {

inline bool actsOnMachineFiles(const ClassInfo& info) {
  for (StringView name : {u"FileSystem", u"FileSystemObject", u"TextStream", u"Drive", u"Folder"}) {
    if (equalsIgnoreCase(info.name(), name)) return true;
  }
  return false;
}

// Gives the process an ODBC configuration without drivers or data sources.
inline void withoutOdbcDrivers() {
  const std::filesystem::path folder =
      std::filesystem::temp_directory_path() / ("ravelin-fuzz-odbc-" + std::to_string(::getpid()));
  std::filesystem::create_directories(folder);
  for (const char* name : {"odbcinst.ini", "odbc.ini"})
    std::ofstream(folder / name);
  ::setenv("ODBCSYSINI", folder.c_str(), 1);
  ::setenv("ODBCINSTINI", "odbcinst.ini", 1);
  ::setenv("ODBCINI", (folder / "odbc.ini").c_str(), 1);
  // A user's own data sources would be found through HOME.
  ::setenv("HOME", folder.c_str(), 1);
}

}  // namespace ravelin::fuzzing
