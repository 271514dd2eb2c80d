#include <string>

#include "checking/description_schema.h"
#include "packager/commands.h"

void runSchema(PackagerOutput& output) {
    for (const std::string& line : descriptionSchema()) {
        output.print(line);
    }
}
