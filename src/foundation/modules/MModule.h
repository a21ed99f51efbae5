#pragma once

#include <atomic>
#include <cstdint>

#include "foundation/modules/Export.h"
#include "foundation/strings/MString.h"
#include "foundation/threads/MLock.h"

/// The library or program that this code is part of: who made it, where it lies, who uses it.
/// One for each, made by the first OstrelDLLInitialize; it stays until the library goes.
class MModule
{
public:
    /// Counts one user of the module, an adapter or an effect, as long as it lives.
    class User
    {
    public:
        User() noexcept { Get().users.fetch_add(1); }
        ~User();
        User(const User&) = delete;
        User& operator=(const User&) = delete;
    };

    static MModule& Get() noexcept;

    const MString& GetName() const noexcept { return name; }   ///< "Tonvale"
    const MString& GetMaker() const noexcept { return maker; } ///< "Quillfern"
    /// Four bytes, the first of them topmost: 5.03.0.0.
    std::uint32_t GetVersion() const noexcept { return version; }
    /// The file of the library or program, with its whole path and without symbolic links; empty if
    /// the system cannot tell.
    const MString& GetPath() const noexcept { return path; }
    /// The folder of this product's data. Created unless it is there; where that fails, who writes
    /// to it will notice. What an earlier version kept elsewhere is moved there first. Any thread.
    /// @throws MException (0) as systempaths::Get does
    MString GetDataPath() const;
    /// "VST2", "VST3", "Render", or empty; as the last adapter set it. Any thread.
    MString GetHostName() const;
    void SetHostName(const MString& newHostName);
    int CountUsers() const noexcept { return users.load(); }

private:
    MModule();

    MString name = "Tonvale";
    MString maker = "Quillfern";
    MString path;
    std::uint32_t version;
    mutable MLock lock; ///< of hostName
    MString hostName;
    std::atomic<int> users = 0;
};

/// Makes the tables that all threads share, before there are such threads: every entry from outside
/// calls it first, and each time it answers 1. Any thread.
extern "C" TONVALE_EXPORT std::int32_t OstrelDLLInitialize() noexcept;
