#pragma once
// The stored records as the game writes them locally: the CSV header and one line per record in
// arrival order (trials/trial_data.h), so that a study's server data and its local or auto-run
// data load with the same analysis script.

#include <string>

#include "server/trial_store.h"

namespace veldra {

// Uses the game's dynamic values, which are not shared between threads: calls are serialised
// here, and no other serving code makes such values, so the researcher's page may download
// while the API serves. Throws when a stored record is not JSON.
std::string trial_records_as_csv(TrialStore& store);

// Writes the CSV to `path` (replacing it only once it is complete); "" on success, else why not.
std::string export_trial_records(TrialStore& store, const std::string& path);

}  // namespace veldra
