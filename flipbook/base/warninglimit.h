#pragma once

/// How many warnings of one kind people are told about one file; the rest are counted.
constexpr int MaxWarnings = 20;
