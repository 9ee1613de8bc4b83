#pragma once
// The study server's endpoints, one function each, from what the request carries to the answer
// the game's server API client expects. Authentication and routing are api_routes.h.
//
// Answers: 2xx as the client reads them; 400 malformed JSON or an unknown field name; 403 a
// record of a participant who is not registered; 404 an unknown participant on a query; 409 a
// different record under a stored (user, level file, seed); 422 JSON that is not a whole record.
// A database failure throws SqliteError (the service answers 500).

#include <optional>
#include <string>
#include <string_view>

#include "server/api_answer.h"
#include "server/trial_store.h"

namespace veldra {

// GET / (the client's connection test): 200 "ok".
ApiAnswer answer_connection_test();

// POST api/game/trials: 201 {"status": "stored"} for a new record, 200 {"status": "already
// stored"} for one the server has (the client's retry); both are success to the client.
ApiAnswer answer_trial_submit(TrialStore& store, std::string_view body);

// GET api/game/levelsPerUser/<id>: JSON array of level file names, each once.
ApiAnswer answer_levels_per_user(TrialStore& store, const std::string& user_id);

// GET api/game/trialsPerUser/<id>[?fields=a,b]: JSON array of the user's records in arrival
// order; with fields, each record holds only those top-level fields.
ApiAnswer answer_trials_per_user(TrialStore& store, const std::string& user_id,
                                 const std::optional<std::string>& fields);

// GET api/game/totalScorePerUser/<id>: {"total_score": sum of the records' trial scores}.
ApiAnswer answer_total_score_per_user(TrialStore& store, const std::string& user_id);

// GET api/game/userExists/<id>: text "1" for a registered participant, "0" otherwise (the
// client takes exactly "1" as yes, so an unknown id is an answer here, not an error).
ApiAnswer answer_user_exists(TrialStore& store, const std::string& user_id);

}  // namespace veldra
