#pragma once

/// Numbers of the commands that may become one with the one before.
namespace CommandId
{

constexpr int Geometry = 1;
constexpr int Setting = 2;

} // namespace CommandId
