#pragma once

/// What a document may have at most.
namespace DocumentLimits
{

constexpr int MaxPages = 10000;
constexpr int MaxObjects = 100000; ///< on all its pages

} // namespace DocumentLimits
