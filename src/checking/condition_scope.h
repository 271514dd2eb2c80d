#pragma once

#include <cstdint>

class CheckContext;

// Whether the element, or one around it, has a Condition, so that it may be meant for one system alone.
bool hasConditionAround(const CheckContext& context, std::int32_t node);
