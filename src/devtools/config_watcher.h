#pragma once
// Hot reload: while the developer tools exist, the configuration files in effect (the base
// file and the custom one) are watched, and a change on disk is loaded into the running game,
// through configuration_apply.h, so a file saved half-typed keeps what ran. The log says which
// file changed and what became of it.

#include "devtools/file_change_watch.h"
#include "runtime/instance.h"
#include "runtime/object_type.h"

namespace veldra {

inline constexpr int CONFIG_WATCH_INTERVAL_STEPS = 30;

class obj_config_watcher : public Instance {
    VELDRA_OBJECT(obj_config_watcher, Instance)
public:
    obj_config_watcher() { persistent = true; }
    void on_step() override;

    // Looks at the files now; true when one had changed (and a reload was tried).
    bool check();

private:
    FileChangeWatch watch_;
    int countdown_ = CONFIG_WATCH_INTERVAL_STEPS;
};

}  // namespace veldra
