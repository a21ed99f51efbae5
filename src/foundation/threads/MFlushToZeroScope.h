#pragma once

/// Lets this thread compute with zeros in place of the tiniest numbers, which are slow, for as long
/// as the object lives; then as before. Does nothing on processors other than x86-64.
class MFlushToZeroScope
{
public:
    MFlushToZeroScope() noexcept;
    ~MFlushToZeroScope();
    MFlushToZeroScope(const MFlushToZeroScope&) = delete;
    MFlushToZeroScope& operator=(const MFlushToZeroScope&) = delete;

private:
    unsigned before; ///< the thread's control word
};
