// `corvane-worker models`: what this worker has to work with. Called once, from the main thread.
#pragma once

namespace corvane {

// Prints the recognisers, the other networks and the library that runs them, what is missing of them, and where models
// are looked for. Returns the exit status: 0, or 1 if nothing here can transcribe.
int runModels();

} // namespace corvane
