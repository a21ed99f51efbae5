// Part of each test program: neither it nor what it starts sees the settings of the user. Each
// program has a folder of its own, which does not exist until something writes to it.

#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>

namespace
{

class OwnUserData
{
public:
    OwnUserData()
    {
        constexpr const char* Variable = "QUILLFERN_DATA";
        if (std::getenv(Variable) != nullptr) // NOLINT(concurrency-mt-unsafe): there is one thread
            return;
        std::string name("tonvale-test-data-");
        name += std::to_string(std::random_device()());
        folder = std::filesystem::temp_directory_path() / name;
#ifdef _WIN32
        _putenv_s(Variable, folder.string().c_str());
#else
        setenv(Variable, folder.c_str(), 1); // NOLINT(concurrency-mt-unsafe)
#endif
    }
    OwnUserData(const OwnUserData&) = delete;
    OwnUserData& operator=(const OwnUserData&) = delete;
    ~OwnUserData()
    {
        std::error_code ignored;
        if (!folder.empty())
            std::filesystem::remove_all(folder, ignored);
    }

private:
    std::filesystem::path folder; ///< empty if another one is set
};

const OwnUserData ownUserData; // NOLINT(cert-err58-cpp): there is nobody yet to catch it

} // namespace
