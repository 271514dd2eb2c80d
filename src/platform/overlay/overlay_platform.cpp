#include "platform/overlay/overlay_platform.h"

MachineRules systemMachineRules() {
    return {platform::systemChangeRules(), platform::systemRegistryRules(), platform::systemVariableRules()};
}

OverlayPlatform::OverlayPlatform(const platform::Platform& base, const MachineRules& rules)
    : files(base.files, rules.files),
      registry(base.registry, rules.registry),
      processes(base.processes),
      environment(base.environment, rules.variables),
      shell(files),
      firewall(base.firewall),
      console(base.console) {}
