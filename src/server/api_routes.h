#pragma once
// Which endpoint a request reaches: authentication first (so that nothing, not even whether a
// path exists, is told to a client without the credentials), then the path, then the method.
//
// 401 with a WWW-Authenticate challenge for a missing or wrong Authorization header; 404 for a
// path that is no endpoint; 405 with an Allow header for a wrong method (HEAD counts as GET).

#include "server/api_answer.h"
#include "server/basic_auth.h"
#include "server/trial_store.h"

namespace veldra {

// Paths are the client's: "/" for the connection test, the endpoints under "/api/game/".
ApiAnswer answer_api_request(const ApiRequest& request, TrialStore& store,
                             const BasicCredentials& credentials);

}  // namespace veldra
