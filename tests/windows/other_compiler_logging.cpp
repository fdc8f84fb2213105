// The host's logging library as Microsoft's compiler builds it. Writes severity, group and text of each
// message into log.txt.
using Text = const wchar_t*;

extern "C" {
__declspec(dllimport) void* CreateFileW(Text, unsigned, unsigned, void*, unsigned, unsigned, void*);
__declspec(dllimport) int WriteFile(void*, const void*, unsigned, unsigned*, void*);
__declspec(dllimport) int CloseHandle(void*);
}

namespace NTamriskSharedUtil::Logging {

struct VLogLevel {
    enum VSeverityLevel : int {};
};

class __declspec(dllexport) VLogging {
  public:
    static VLogging& GetInstance();
    unsigned GetOrCreateGroupId(const char* name);
    bool IsEnabled() const;
    unsigned GetGlobalLogGroupMask() const;
    VLogLevel::VSeverityLevel GetGlobalLogLevel() const;
    void Log(VLogLevel::VSeverityLevel severity, unsigned group, Text text);

  private:
    unsigned group_;
};

VLogging& VLogging::GetInstance() {
    static VLogging instance{};
    return instance;
}
unsigned VLogging::GetOrCreateGroupId(const char* name) { return group_ = name[5] == 'S' ? 64 : 1; }
bool VLogging::IsEnabled() const { return true; }
unsigned VLogging::GetGlobalLogGroupMask() const { return group_; }
VLogLevel::VSeverityLevel VLogging::GetGlobalLogLevel() const { return VLogLevel::VSeverityLevel{2}; }
void VLogging::Log(VLogLevel::VSeverityLevel severity, unsigned group, Text text) {
    constexpr unsigned kAppend = 4;
    constexpr unsigned kOpenAlways = 4;
    void* const file = CreateFileW(L"log.txt", kAppend, 7, nullptr, kOpenAlways, 128, nullptr);
    const wchar_t numbers[] = {static_cast<wchar_t>(L'0' + severity), static_cast<wchar_t>(L'0' + group / 8)};
    unsigned length = 0;
    while (text[length] != 0) ++length;
    unsigned written = 0;
    WriteFile(file, numbers, sizeof numbers, &written, nullptr);
    WriteFile(file, text, 2 * length, &written, nullptr);
    WriteFile(file, L"\n", 2, &written, nullptr);
    CloseHandle(file);
}

}  // namespace NTamriskSharedUtil::Logging

extern "C" int _DllMainCRTStartup(void*, unsigned, void*) { return 1; }
