// A library with one function: the least that loading any library costs.
extern "C" __declspec(dllexport) unsigned long __stdcall VCLGetVersion() { return 0; }
