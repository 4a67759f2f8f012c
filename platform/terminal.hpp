// The console the script host talks to: whether standard input is an interactive terminal.
#pragma once

namespace ravelin::platform {

// True when standard input is a terminal (the host then offers its prompt instead of reading a
// script from the input).
bool standardInputIsTerminal();

}  // namespace ravelin::platform
