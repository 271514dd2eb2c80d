#pragma once

class CheckContext;

// Elements, attributes and words that a setup doesn't know, or that are missing; numbers and colours that are
// none; texts that are longer than what they are kept in.
void checkWords(const CheckContext& context);
