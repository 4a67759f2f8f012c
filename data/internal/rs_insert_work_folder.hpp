// The folders UpdateRsToInsert makes for its work files. Each name starts with a prefix of the
// process's own, so that a program (or a test) tells its folders from those of other processes
// working in the same temporary folder.
#pragma once

#include <string>

namespace ravelin::data_utilities {

// "ravelin-rs-insert-", a random tag drawn once per process, and "-".
const std::string& workFolderPrefix();

}  // namespace ravelin::data_utilities
