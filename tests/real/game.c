// A small game of our own for Wine: a window without borders over the whole screen, or an ordinary one with --windowed.
// It prints each thing it is given as one line: keys, characters, raw mouse, clicks, focus, minimised and restored. Return opens
// and closes a chat line. --frame MS has it read its messages only every so often, as a game does between two pictures; a
// line behind them tells whether it was in time, by a fifth of that or of
// a thirtieth of a second.
// --place X,Y,WIDTH,HEIGHT says where it stands. WM_CLOSE ends it.

#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <windows.h>

#define SCENE RGB(20, 70, 50)
#define PICTURE 33  // milliseconds

static struct {
    BOOL chat;
    WCHAR text[4096];
    int length;
} field;

// One write a line, so that a line is whole as soon as it can be read.
static void say(const char* format, ...) {
    char line[256];
    DWORD written;
    va_list values;
    va_start(values, format);
    const int length = vsnprintf(line, sizeof line, format, values);
    va_end(values);
    WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), line, length, &written, NULL);
}

static void typed(HWND window, WCHAR unit) {
    say("char %04X\n", unit);
    if (unit == L'\r') {
        field.chat = !field.chat;
        field.length = 0;
        say("chat %s\n", field.chat ? "open" : "closed");
    } else if (field.chat && field.length < (int)(sizeof field.text / sizeof *field.text)) {
        field.text[field.length++] = unit;
    }
    InvalidateRect(window, NULL, FALSE);
}

static void paint(HWND window) {
    PAINTSTRUCT paint;
    RECT area;
    HDC context = BeginPaint(window, &paint);
    HBRUSH scene = CreateSolidBrush(SCENE);
    GetClientRect(window, &area);
    FillRect(context, &area, scene);
    DeleteObject(scene);
    if (field.chat) {
        SetBkColor(context, RGB(0, 0, 0));
        SetTextColor(context, RGB(255, 255, 255));
        area.top = area.bottom - 40;
        ExtTextOutW(context, area.left + 20, area.top, ETO_OPAQUE, &area, field.text, field.length, NULL);
    }
    EndPaint(window, &paint);
}

static void rawMouse(HRAWINPUT handle) {
    RAWINPUT input;
    UINT size = sizeof input;
    if (GetRawInputData(handle, RID_INPUT, &input, &size, sizeof input.header) == (UINT)-1) return;
    const RAWMOUSE* mouse = &input.data.mouse;
    say("raw %ld %ld %u\n", mouse->lLastX, mouse->lLastY, mouse->usButtonFlags);
}

static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM first, LPARAM second) {
    switch (message) {
        case WM_KEYDOWN:
        case WM_SYSKEYDOWN: say("key down %02X\n", (UINT)first); break;
        case WM_KEYUP:
        case WM_SYSKEYUP: say("key up %02X\n", (UINT)first); break;
        case WM_CHAR:
        case WM_SYSCHAR: typed(window, (WCHAR)first); return 0;
        case WM_INPUT: rawMouse((HRAWINPUT)second); break;
        case WM_LBUTTONDOWN: say("click %d %d\n", (short)LOWORD(second), (short)HIWORD(second)); break;
        case WM_SETFOCUS: say("focus gained\n"); break;
        case WM_KILLFOCUS: say("focus lost\n"); break;
        case WM_SIZE:
            if (first == SIZE_MINIMIZED) say("minimised\n");
            if (first == SIZE_RESTORED || first == SIZE_MAXIMIZED) say("size %d %d\n", LOWORD(second), HIWORD(second));
            break;
        case WM_PAINT: paint(window); return 0;
        case WM_DESTROY: PostQuitMessage(0); return 0;
    }
    return DefWindowProcW(window, message, first, second);
}

static LONGLONG microseconds(void) {
    LARGE_INTEGER now, second;
    QueryPerformanceCounter(&now);
    QueryPerformanceFrequency(&second);
    return now.QuadPart * 1000000 / second.QuadPart;
}

// Reads what has come; false once the program is to end. Without a frame it waits for the next message.
static BOOL readMessages(DWORD frame) {
    static LONGLONG last;  // when it last looked and found nothing
    MSG message;
    if (!frame) {
        if (GetMessageW(&message, NULL, 0, 0) <= 0) return FALSE;
        TranslateMessage(&message);
        DispatchMessageW(&message);
        return TRUE;
    }
    Sleep(frame);
    BOOL any = FALSE;
    LONGLONG before;
    while (before = microseconds(), PeekMessageW(&message, NULL, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT) return FALSE;
        any = TRUE;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    // What it has read came since it last found nothing.
    if (any) say(microseconds() - last < 1200 * (LONGLONG)max(frame, PICTURE) ? "in time\n" : "late\n");
    last = before;
    return TRUE;
}

int main(int count, char** arguments) {
    int x = 0, y = 0, width = GetSystemMetrics(SM_CXSCREEN), height = GetSystemMetrics(SM_CYSCREEN);
    DWORD frame = 0, style = WS_POPUP;
    for (int at = 1; at < count; ++at) {
        if (!strcmp(arguments[at], "--windowed")) style = WS_OVERLAPPEDWINDOW;
        else if (!strcmp(arguments[at], "--frame") && at + 1 < count) frame = atoi(arguments[++at]);
        else if (!strcmp(arguments[at], "--place") && at + 1 < count) sscanf(arguments[++at], "%d,%d,%d,%d", &x, &y, &width, &height);
        else return 2;
    }
    const WNDCLASSW kind = {.lpfnWndProc = procedure, .hInstance = GetModuleHandleW(NULL), .hCursor = LoadCursorW(NULL, (LPCWSTR)IDC_ARROW),
                            .lpszClassName = L"game"};
    RegisterClassW(&kind);
    HWND window = CreateWindowExW(0, L"game", L"Game under Wine", style, x, y, width, height, NULL, NULL, kind.hInstance, NULL);
    const RAWINPUTDEVICE mouse = {.usUsagePage = 1, .usUsage = 2, .hwndTarget = window};
    if (!window || !RegisterRawInputDevices(&mouse, 1, sizeof mouse)) return 1;
    ShowWindow(window, SW_SHOW);
    SetForegroundWindow(window);
    say("ready %p\n", GetPropA(window, "__wine_x11_whole_window"));
    while (readMessages(frame)) continue;
    say("closed\n");
    return 0;
}
