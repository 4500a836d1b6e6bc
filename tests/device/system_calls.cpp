// SPDX-License-Identifier: MIT
#include "tests/device/system_calls.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <utility>
#include <vector>

#include "platform/device/packed_template.h"
#include "tests/device/callbacks.h"
#include "tests/device/fault.h"
#include "tests/device/machine.h"
#include "tests/device/signatures.h"

namespace
{

// ---- Signatures ---------------------------------------------------------------------------------------

constexpr Argument Number{Kind::Number}, Signed{Kind::Signed}, Handle{Kind::Handle}, Null{Kind::Null},
    Text{Kind::Text}, TextPlaceForPath{Kind::TextPlaceForPath}, HandlePlace{Kind::HandlePlace},
    WindowProcedure{Kind::WindowProcedure}, ThreadProcedure{Kind::ThreadProcedure}, Message{Kind::Message},
    WParam{Kind::WParam}, LParam{Kind::LParam};
constexpr Argument CountedText(uint32_t count)
{
    return {Kind::CountedText, count};
}
constexpr Argument TextPlace(uint32_t capacity)
{
    return {Kind::TextPlace, capacity};
}
constexpr Argument TextPlaceInBytes(uint32_t bytes)
{
    return {Kind::TextPlaceInBytes, bytes};
}
constexpr Argument TextPlaceCountAt(uint32_t place)
{
    return {Kind::TextPlaceCountAt, place};
}
template <typename T> constexpr Argument Shared{Kind::Shared, 0, sizeof(T)};
template <typename T> constexpr Argument SharedToRead{Kind::SharedToRead, 0, sizeof(T)};
constexpr Argument NumberPlace = Shared<DWORD>;
constexpr Argument Bytes(uint32_t count)
{
    return {Kind::Bytes, count};
}
constexpr Argument BytesToRead(uint32_t count)
{
    return {Kind::BytesToRead, count};
}
constexpr Argument Structure(const StructureLayout& layout)
{
    return {Kind::Structure, 0, 0, &layout};
}
constexpr Argument StructureToRead(const StructureLayout& layout)
{
    return {Kind::StructureToRead, 0, 0, &layout};
}

const Signature Signatures[] = {
    // Errors.
    Row<GetLastError>("GetLastError", Result::Number),
    Row<SetLastError>("SetLastError", Result::None, Number),

    // Files and ports.
    Row<CreateFileW>("CreateFileW", Result::Handle, Text, Number, Number, Null, Number, Number, Null),
    Row<ReadFile>("ReadFile", Result::Number, Handle, Bytes(2), Number, NumberPlace, Null),
    Row<WriteFile>("WriteFile", Result::Number, Handle, BytesToRead(2), Number, NumberPlace, Null),
    Row<CloseHandle>("CloseHandle", Result::Number, Handle),
    Row<GetCommProperties>("GetCommProperties", Result::Number, Handle, Structure(PortPropertiesLayout)),
    Row<GetCommState>("GetCommState", Result::Number, Handle, Shared<DCB>),
    Row<SetCommState>("SetCommState", Result::Number, Handle, Shared<DCB>),
    Row<GetCommTimeouts>("GetCommTimeouts", Result::Number, Handle, Shared<COMMTIMEOUTS>),
    Row<SetCommTimeouts>("SetCommTimeouts", Result::Number, Handle, Shared<COMMTIMEOUTS>),
    Row<ClearCommError>("ClearCommError", Result::Number, Handle, NumberPlace, Shared<COMSTAT>),
    Row<EscapeCommFunction>("EscapeCommFunction", Result::Number, Handle, Number),
    Row<SetCommMask>("SetCommMask", Result::Number, Handle, Number),
    Row<SHGetSpecialFolderPathW>("SHGetSpecialFolderPath", Result::Number, Handle, TextPlaceForPath, Signed,
                                 Number),
    Row<GetSaveFileNameW>("GetSaveFileNameW", Result::Number, Structure(SaveDialogLayout)),

    // Threads and time.
    Row<CreateThread>("CreateThread", Result::Handle, Null, Number, ThreadProcedure, Number, Number,
                      NumberPlace),
    Row<CreateMutexW>("CreateMutexW", Result::Handle, Null, Number, Text),
    Row<GetExitCodeThread>("GetExitCodeThread", Result::Number, Handle, NumberPlace),
    Row<Sleep>("Sleep", Result::None, Number),
    Row<GetTickCount>("GetTickCount", Result::Number),
    Row<GetLocalTime>("GetLocalTime", Result::None, Shared<SYSTEMTIME>),
    Row<MsgWaitForMultipleObjectsEx>("MsgWaitForMultipleObjectsEx", Result::Number, Number, Null, Number,
                                     Number, Number),

    // Registry.
    Row<RegOpenKeyExW>("RegOpenKeyExW", Result::Signed, Number, Text, Number, Number, HandlePlace),
    Row<RegCreateKeyExW>("RegCreateKeyExW", Result::Signed, Number, Text, Number, Text, Number, Number, Null,
                         HandlePlace, NumberPlace),
    Row<RegDeleteValueW>("RegDeleteValueW", Result::Signed, Number, Text),
    Row<RegEnumKeyExW>("RegEnumKeyExW", Result::Signed, Number, Number, TextPlaceCountAt(3), NumberPlace,
                       Null, Null, Null, Null),
    Row<RegCloseKey>("RegCloseKey", Result::Signed, Number),

    // System and libraries.
    Row<WideCharToMultiByte>("WideCharToMultiByte", Result::Signed, Number, Number, Text, Signed, Bytes(5),
                             Signed, SharedToRead<char>, NumberPlace),
    Row<GetVersionExW>("GetVersionExW", Result::Number, Structure(VersionLayout)),
    Row<SystemParametersInfoW>("SystemParametersInfoW", Result::Number, Number, Number, TextPlaceInBytes(1),
                               Number),
    Row<LoadLibraryW>("LoadLibraryW", Result::Handle, Text),
    Row<FreeLibrary>("FreeLibrary", Result::Number, Handle),

    // Windows, messages, menus.
    Row<RegisterClassW>("RegisterClassW", Result::Number, StructureToRead(WindowClassLayout)),
    Row<CreateWindowExW>("CreateWindowExW", Result::Handle, Number, Text, Text, Number, Signed, Signed,
                         Signed, Signed, Handle, Handle, Handle, Null),
    Row<DestroyWindow>("DestroyWindow", Result::Number, Handle),
    Row<IsWindow>("IsWindow", Result::Number, Handle),
    Row<DefWindowProcW>("DefWindowProcW", Result::Signed, Handle, Message, WParam, LParam),
    Row<FindWindowW>("FindWindowW", Result::Handle, Text, Text),
    Row<GetActiveWindow>("GetActiveWindow", Result::Handle),
    Row<GetParent>("GetParent", Result::Handle, Handle),
    Row<SetFocus>("SetFocus", Result::Handle, Handle),
    Row<GetFocus>("GetFocus", Result::Handle),
    Row<EnableWindow>("EnableWindow", Result::Number, Handle, Number),
    Row<IsWindowEnabled>("IsWindowEnabled", Result::Number, Handle),
    Row<ShowWindow>("ShowWindow", Result::Number, Handle, Signed),
    Row<UpdateWindow>("UpdateWindow", Result::Number, Handle),
    Row<InvalidateRect>("InvalidateRect", Result::Number, Handle, SharedToRead<RECT>, Number),
    Row<GetClientRect>("GetClientRect", Result::Number, Handle, Shared<RECT>),
    Row<GetWindowRect>("GetWindowRect", Result::Number, Handle, Shared<RECT>),
    Row<GetWindow>("GetWindow", Result::Handle, Handle, Number),
    Row<ScreenToClient>("ScreenToClient", Result::Number, Handle, Shared<POINT>),
    Row<SetScrollInfo>("SetScrollInfo", Result::Signed, Handle, Signed, SharedToRead<SCROLLINFO>, Number),
    Row<ScrollWindowEx>("ScrollWindowEx", Result::Signed, Handle, Signed, Signed, SharedToRead<RECT>,
                        SharedToRead<RECT>, Null, Shared<RECT>, Number),
    Row<SetWindowPos>("SetWindowPos", Result::Number, Handle, Handle, Signed, Signed, Signed, Signed, Number),
    Row<GetWindowLongW>("GetWindowLongW", Result::Signed, Handle, Signed),
    Row<SetWindowLongW>("SetWindowLongW", Result::Signed, Handle, Signed, Signed),
    Row<SetWindowTextW>("SetWindowTextW", Result::Number, Handle, Text),
    Row<GetWindowTextW>("GetWindowTextW", Result::Signed, Handle, TextPlace(2), Signed),
    Row<GetWindowTextLengthW>("GetWindowTextLengthW", Result::Signed, Handle),
    Row<SendMessageW>("SendMessageW", Result::Signed, Handle, Message, WParam, LParam),
    Row<PostMessageW>("PostMessageW", Result::Number, Handle, Message, WParam, LParam),
    Row<PostQuitMessage>("PostQuitMessage", Result::None, Signed),
    Row<GetMessageW>("GetMessageW", Result::Signed, Structure(MsgLayout), Handle, Number, Number),
    Row<PeekMessageW>("PeekMessageW", Result::Number, Structure(MsgLayout), Handle, Number, Number, Number),
    Row<TranslateMessage>("TranslateMessage", Result::Number, StructureToRead(MsgLayout)),
    Row<DispatchMessageW>("DispatchMessageW", Result::Signed, StructureToRead(MsgLayout)),
    Row<SetTimer>("SetTimer", Result::Number, Handle, Number, Number, Null),
    Row<KillTimer>("KillTimer", Result::Number, Handle, Number),
    Row<MessageBoxW>("MessageBoxW", Result::Signed, Handle, Text, Text, Number),
    Row<CommandBar_Create>("CommandBar_Create", Result::Handle, Handle, Handle, Signed),
    Row<CommandBar_InsertMenubar>("CommandBar_InsertMenubar", Result::Number, Handle, Handle, Number, Number),
    Row<CommandBar_Height>("CommandBar_Height", Result::Signed, Handle),

    // Dialogs.
    Row<EndDialog>("EndDialog", Result::Number, Handle, Signed),
    Row<GetDlgItem>("GetDlgItem", Result::Handle, Handle, Signed),
    Row<GetDlgCtrlID>("GetDlgCtrlID", Result::Signed, Handle),
    Row<SetDlgItemTextW>("SetDlgItemTextW", Result::Number, Handle, Signed, Text),
    Row<GetDlgItemTextW>("GetDlgItemTextW", Result::Number, Handle, Signed, TextPlace(3), Signed),
    Row<SetDlgItemInt>("SetDlgItemInt", Result::Number, Handle, Signed, Number, Number),
    Row<SendDlgItemMessageW>("SendDlgItemMessageW", Result::Signed, Handle, Signed, Message, WParam, LParam),

    // Resources.
    Row<LoadStringW>("LoadStringW", Result::Signed, Handle, Number, TextPlace(3), Signed),
    Row<LoadIconW>("LoadIconW", Result::Handle, Handle, Text),
    Row<LoadCursorW>("LoadCursorW", Result::Handle, Handle, Text),
    Row<LoadBitmapW>("LoadBitmapW", Result::Handle, Handle, Text),

    // Drawing.
    Row<BeginPaint>("BeginPaint", Result::Handle, Handle, Structure(PaintLayout)),
    Row<EndPaint>("EndPaint", Result::Number, Handle, StructureToRead(PaintLayout)),
    Row<GetDC>("GetDC", Result::Handle, Handle),
    Row<ReleaseDC>("ReleaseDC", Result::Signed, Handle, Handle),
    Row<CreateCompatibleDC>("CreateCompatibleDC", Result::Handle, Handle),
    Row<DeleteDC>("DeleteDC", Result::Number, Handle),
    Row<CreateCompatibleBitmap>("CreateCompatibleBitmap", Result::Handle, Handle, Signed, Signed),
    Row<SelectObject>("SelectObject", Result::Handle, Handle, Handle),
    Row<GetStockObject>("GetStockObject", Result::Handle, Signed),
    Row<CreateSolidBrush>("CreateSolidBrush", Result::Handle, Number),
    Row<CreateFontIndirectW>("CreateFontIndirectW", Result::Handle, StructureToRead(FontLayout)),
    Row<SetTextColor>("SetTextColor", Result::Number, Handle, Number),
    Row<SetBkColor>("SetBkColor", Result::Number, Handle, Number),
    Row<SetBkMode>("SetBkMode", Result::Signed, Handle, Signed),
    Row<BitBlt>("BitBlt", Result::Number, Handle, Signed, Signed, Signed, Signed, Handle, Signed, Signed,
                Number),
    Row<StretchBlt>("StretchBlt", Result::Number, Handle, Signed, Signed, Signed, Signed, Handle, Signed,
                    Signed, Signed, Signed, Number),
    Row<Ellipse>("Ellipse", Result::Number, Handle, Signed, Signed, Signed, Signed),
    Row<Rectangle>("Rectangle", Result::Number, Handle, Signed, Signed, Signed, Signed),
    Row<FillRect>("FillRect", Result::Signed, Handle, SharedToRead<RECT>, Handle),
    Row<DrawTextW>("DrawTextW", Result::Signed, Handle, CountedText(2), Signed, Shared<RECT>, Number),
    Row<ExtTextOutW>("ExtTextOutW", Result::Number, Handle, Signed, Signed, Number, SharedToRead<RECT>,
                     CountedText(6), Number, Null),
};

// Exports of the libraries that the program looks for as it runs; a scenario's own routines answer them.
const Signature Exports[] = {
    ExportRow<BOOL (*)(ShellInitDialog*)>("SHInitDialog", Result::Number, Structure(ShellInitDialogLayout)),
    ExportRow<BOOL (*)(ShellMenuBar*)>("SHCreateMenuBar", Result::Number, Structure(ShellMenuBarLayout)),
    ExportRow<BOOL (*)(HWND, WPARAM, LPARAM, ShellActivateInfo*)>("#83", Result::Number, Handle, Number,
                                                                  Signed, Structure(ShellActivateLayout)),
    ExportRow<void (*)(UINT, WPARAM, LPARAM)>("#97", Result::None, Number, Number, Signed),
    ExportRow<void (*)()>("#188", Result::None), // looked up, not called
    ExportRow<BOOL (*)(CHOOSECOLORW*)>("ChooseColor", Result::Number, Structure(ChooseColorLayout)),
};

// ---- Calls that no signature describes ----------------------------------------------------------------

HANDLE HandleOf(uint32_t word)
{
    return reinterpret_cast<HANDLE>(static_cast<intptr_t>(static_cast<int32_t>(word)));
}

HKEY KeyOf(uint32_t word)
{
    return reinterpret_cast<HKEY>(static_cast<uintptr_t>(word));
}

template <typename Handle> uint32_t WordOf(Handle handle)
{
    return static_cast<uint32_t>(reinterpret_cast<uintptr_t>(handle));
}

// An error's text that the system has allocated: a copy for the program, freed with the original.
std::map<GuestAddress, HANDLE> AllocatedTexts;

uint64_t CallFormatMessage(const GuestCall& call)
{
    if (!(call.Word(0) & FORMAT_MESSAGE_ALLOCATE_BUFFER)) DeviceFault("only allocated texts are supported");
    wchar_t* text = nullptr;
    const DWORD length = FormatMessageW(call.Word(0), nullptr, call.Word(2), call.Word(3),
                                        reinterpret_cast<wchar_t*>(&text), 0, nullptr);
    GuestAddress copy = 0;
    if (length != 0) {
        copy = AllocateGuest(2 * (length + 1));
        StoreGuestText(copy, text);
        AllocatedTexts[copy] = text;
    }
    StoreGuest(call.Word(4), copy);
    return length;
}

uint64_t CallLocalFree(const GuestCall& call)
{
    const GuestAddress memory = call.Word(0);
    if (const auto text = AllocatedTexts.find(memory); text != AllocatedTexts.end()) {
        if (LocalFree(text->second)) return memory;
        AllocatedTexts.erase(text);
    }
    FreeGuest(memory);
    return 0;
}

uint64_t CallLocalAlloc(const GuestCall& call)
{
    constexpr uint32_t ZeroFill = 0x40;
    const GuestAddress memory = AllocateGuest(call.Word(1));
    if (call.Word(0) & ZeroFill)
        std::memset(GuestBytes(memory, call.Word(1), Access::ReadWrite), 0, call.Word(1));
    return memory;
}

// Texts in the registry: the platform keeps the host's characters.
bool IsText(DWORD type)
{
    return type == REG_SZ || type == REG_MULTI_SZ;
}

uint64_t CallRegQueryValue(const GuestCall& call)
{
    const HKEY key = KeyOf(call.Word(0));
    const std::wstring name = call.Word(1) != 0 ? LoadGuestText(call.Word(1)) : L"";
    const GuestAddress typePlace = call.Word(3), dataPlace = call.Word(4), sizePlace = call.Word(5);
    if (sizePlace == 0) DeviceFault("a registry value is queried without a size");
    const DWORD capacity = LoadGuest<DWORD>(sizePlace);
    DWORD type = 0, size = 0;
    LONG result = RegQueryValueExW(key, name.c_str(), nullptr, &type, nullptr, &size);
    if (result != ERROR_SUCCESS) return static_cast<uint64_t>(result);
    std::string data(size, 0);
    RegQueryValueExW(key, name.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(data.data()), &size);
    if (IsText(type)) {
        std::string narrower;
        for (size_t i = 0; i + sizeof(wchar_t) <= data.size(); i += sizeof(wchar_t))
            narrower += data.substr(i, 2);
        narrower +=
            data.substr(data.size() / sizeof(wchar_t) * sizeof(wchar_t)); // of a text with an odd size
        data = narrower;
    }
    if (typePlace != 0) StoreGuest(typePlace, type);
    StoreGuest(sizePlace, static_cast<DWORD>(data.size()));
    if (dataPlace == 0) return ERROR_SUCCESS;
    if (capacity < data.size()) return ERROR_MORE_DATA;
    if (!data.empty())
        std::memcpy(GuestBytes(dataPlace, static_cast<uint32_t>(data.size()), Access::ReadWrite), data.data(),
                    data.size());
    return ERROR_SUCCESS;
}

uint64_t CallRegSetValue(const GuestCall& call)
{
    if (IsText(call.Word(3))) DeviceFault("the program stores no texts");
    const std::wstring name = call.Word(1) != 0 ? LoadGuestText(call.Word(1)) : L"";
    return static_cast<uint64_t>(RegSetValueExW(KeyOf(call.Word(0)), name.c_str(), 0, call.Word(3),
                                                GuestBytes(call.Word(4), call.Word(5), Access::Read),
                                                call.Word(5)));
}

// A bitmap whose pixels the program sees: the platform's own memory.
std::map<uint32_t, GuestAddress> VisiblePixels; // by the bitmap's handle

uint64_t CallCreateDibSection(const GuestCall& call)
{
    const auto* info =
        reinterpret_cast<const BITMAPINFO*>(GuestBytes(call.Word(1), sizeof(BITMAPINFO), Access::Read));
    void* pixels = nullptr;
    const HBITMAP bitmap = CreateDIBSection(static_cast<HDC>(HandleOf(call.Word(0))), info, call.Word(2),
                                            &pixels, HandleOf(call.Word(4)), call.Word(5));
    GuestAddress visible = 0;
    if (bitmap) {
        const BITMAPINFOHEADER& header = info->bmiHeader;
        visible = MapHostMemory(pixels, static_cast<uint32_t>(header.biWidth) *
                                            static_cast<uint32_t>(std::abs(header.biHeight)) * 4);
        VisiblePixels[WordOf(bitmap)] = visible;
    }
    StoreGuest(call.Word(3), visible);
    return WordOf(bitmap);
}

uint64_t CallDeleteObject(const GuestCall& call)
{
    if (!DeleteObject(HandleOf(call.Word(0)))) return FALSE;
    if (const auto found = VisiblePixels.find(call.Word(0)); found != VisiblePixels.end()) {
        UnmapHostMemory(found->second);
        VisiblePixels.erase(found);
    }
    return TRUE;
}

// Dialogs are made from templates that the program unpacks; the platform makes them from its own copy of the
// same ones.
LoadedImage Image;
// The last one that the program looked for, and found; number 0 for none.
uint32_t SoughtTemplate = 0;
ImageResource SoughtResource;

uint64_t CallFindResource(const GuestCall& call)
{
    if (call.Word(1) >> 16 != 0 || call.Word(2) != PackedTemplateType)
        DeviceFault("the program looks for a resource");
    SoughtResource = FindImageResource(Image, PackedTemplateType, call.Word(1));
    SoughtTemplate = SoughtResource.address != 0 ? call.Word(1) : 0;
    if (SoughtTemplate == 0) SetLastError(ERROR_RESOURCE_NAME_NOT_FOUND);
    return SoughtResource.address;
}

uint64_t CallLoadResource(const GuestCall& call)
{
    return call.Word(1); // the handle of a resource is its address
}

void CheckTemplate(GuestAddress address, uint32_t number)
{
    std::vector<uint8_t> packed(SoughtResource.size);
    for (uint32_t i = 0; i < SoughtResource.size; ++i)
        packed[i] = LoadGuest<uint8_t>(SoughtResource.address + i);
    static uint8_t expected[LargestTemplate];
    const size_t size = UnpackTemplate(packed.data(), expected);
    for (uint32_t i = 0; i < size; ++i)
        if (LoadGuest<uint8_t>(address + i) != expected[i])
            DeviceFault("the program has unpacked template " + std::to_string(number) + " differently");

    HeadlessTemplate known;
    const bool isKnown = HeadlessFindTemplate(number, known);
    const bool isSame = isKnown && LoadGuest<uint32_t>(address) == known.style &&
                        LoadGuest<uint16_t>(address + 8) == known.controls.size() &&
                        LoadGuest<int16_t>(address + 14) == known.width &&
                        LoadGuest<int16_t>(address + 16) == known.height;
    if (!isSame)
        DeviceFault("the image has another template " + std::to_string(number) + " than the platform");
}

uint64_t CallDialogBoxIndirectParam(const GuestCall& call)
{
    if (SoughtTemplate == 0) DeviceFault("a dialog is made from no template of the image");
    const uint32_t number = std::exchange(SoughtTemplate, 0);
    CheckTemplate(call.Word(1), number);
    return static_cast<uint64_t>(
        DialogBoxParamW(static_cast<HINSTANCE>(HandleOf(call.Word(0))), MAKEINTRESOURCEW(number),
                        static_cast<HWND>(HandleOf(call.Word(2))), WindowProcedureFor(call.Word(3)),
                        static_cast<int32_t>(call.Word(4))));
}

// A procedure of a library that was looked up: a routine of the system for each.
std::map<FARPROC, GuestAddress> ExportRoutines;

uint64_t CallGetProcAddress(const GuestCall& call)
{
    const bool byNumber = call.Word(1) >> 16 == 0;
    const std::wstring wide = byNumber ? L"#" + std::to_wstring(call.Word(1)) : LoadGuestText(call.Word(1));
    const std::string name(wide.begin(), wide.end());
    const FARPROC target = GetProcAddressW(static_cast<HMODULE>(HandleOf(call.Word(0))),
                                           byNumber ? MAKEINTRESOURCEW(call.Word(1)) : wide.c_str());
    if (!target) return 0;
    const auto row = std::find_if(std::begin(Exports), std::end(Exports),
                                  [&](const Signature& signature) { return signature.name == name; });
    if (row == std::end(Exports)) DeviceFault("the export " + name + " has no signature");
    GuestAddress& routine = ExportRoutines[target];
    if (routine == 0)
        routine = AddSystemRoutine(
            name, [row, target](const GuestCall& caller) { return CallPlatform(*row, caller, target); });
    return routine;
}

uint64_t CallSetForegroundWindow(const GuestCall& call)
{
    constexpr uint32_t WithItsDialogs = 1; // the lowest bit of the handle
    BringToFront(static_cast<HWND>(HandleOf(call.Word(0) & ~WithItsDialogs)));
    return TRUE;
}

// One instruction stream at a time: nothing can come between.
uint64_t CallInterlockedExchange(const GuestCall& call)
{
    const uint32_t before = LoadGuest<uint32_t>(call.Word(0));
    StoreGuest(call.Word(0), call.Word(1));
    return before;
}

uint64_t CallInterlockedTestExchange(const GuestCall& call)
{
    const uint32_t before = LoadGuest<uint32_t>(call.Word(0));
    if (before == call.Word(1)) StoreGuest(call.Word(0), call.Word(2));
    return before;
}

uint64_t CallTerminateProcess(const GuestCall& call)
{
    EndProgram(call.Word(1));
    return TRUE;
}

uint64_t CallRaiseException(const GuestCall& call)
{
    DeviceFault("the program raises exception " + std::to_string(call.Word(0)));
}

// The few routines of the C library that the system exports.
uint64_t CallMemcpy(const GuestCall& call)
{
    const uint32_t size = call.Word(2);
    if (size != 0)
        std::memmove(GuestBytes(call.Word(0), size, Access::ReadWrite),
                     GuestBytes(call.Word(1), size, Access::Read), size);
    return call.Word(0);
}

uint64_t CallMemset(const GuestCall& call)
{
    const uint32_t size = call.Word(2);
    if (size != 0)
        std::memset(GuestBytes(call.Word(0), size, Access::ReadWrite), static_cast<int>(call.Word(1)), size);
    return call.Word(0);
}

uint64_t CallMemcmp(const GuestCall& call)
{
    const uint32_t size = call.Word(2);
    if (size == 0) return 0;
    return static_cast<uint64_t>(std::memcmp(GuestBytes(call.Word(0), size, Access::Read),
                                             GuestBytes(call.Word(1), size, Access::Read), size));
}

uint64_t CallStrlen(const GuestCall& call)
{
    return LoadGuestNarrowText(call.Word(0)).size();
}

uint64_t CallStrcmp(const GuestCall& call)
{
    return static_cast<uint64_t>(
        LoadGuestNarrowText(call.Word(0)).compare(LoadGuestNarrowText(call.Word(1))));
}

uint64_t CallWcslen(const GuestCall& call)
{
    return LoadGuestText(call.Word(0)).size();
}

struct OwnCall {
    const char* name;
    uint64_t (*run)(const GuestCall& call);
};
constexpr OwnCall OwnCalls[] = {
    {"FormatMessageW", CallFormatMessage},
    {"LocalAlloc", CallLocalAlloc},
    {"LocalFree", CallLocalFree},
    {"RegQueryValueExW", CallRegQueryValue},
    {"RegSetValueExW", CallRegSetValue},
    {"CreateDIBSection", CallCreateDibSection},
    {"DeleteObject", CallDeleteObject},
    {"FindResourceW", CallFindResource},
    {"LoadResource", CallLoadResource},
    {"DialogBoxIndirectParamW", CallDialogBoxIndirectParam},
    {"GetProcAddressW", CallGetProcAddress},
    {"SetForegroundWindow", CallSetForegroundWindow},
    {"InterlockedExchange", CallInterlockedExchange},
    {"InterlockedTestExchange", CallInterlockedTestExchange},
    {"TerminateProcess", CallTerminateProcess},
    {"RaiseException", CallRaiseException},
    {"memcpy", CallMemcpy},
    {"memmove", CallMemcpy},
    {"memset", CallMemset},
    {"memcmp", CallMemcmp},
    {"strlen", CallStrlen},
    {"strcmp", CallStrcmp},
    {"wcslen", CallWcslen},
};

} // namespace

GuestAddress ResolveImport(const std::string& library, const std::string& name)
{
    for (const Signature& signature : Signatures)
        if (signature.name == name)
            return AddSystemRoutine(
                name, [&signature](const GuestCall& caller) { return CallPlatform(signature, caller); });
    for (const OwnCall& own : OwnCalls)
        if (own.name == name) return AddSystemRoutine(name, own.run);
    DeviceFault("nothing answers the import " + library + "!" + name);
}

void ServeResourcesOf(const LoadedImage& image)
{
    Image = image;
}

void MapKernelPage()
{
    constexpr GuestAddress Page = 0xFFFFC000;
    constexpr uint32_t CurrentThread = 0x808;
    uint8_t* const page = MapMemory(Page, PageBytes, Access::Read);
    SetBeforeRun([page] {
        const DWORD id = GetCurrentThreadId();
        std::memcpy(page + CurrentThread, &id, sizeof id);
    });
}
