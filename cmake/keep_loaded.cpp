// Part of sanitized executables only. A driver that is unloaded before leaks are counted takes its
// module's name and its own pointers with it, so what it keeps would be reported as ours.
extern "C" int dlclose(void*)
{
    return 0;
}

// Where the leak checker follows the thread-local storage of loaded drivers it guesses the layout
// of the block from its address, and now and then reads its bounds from what is none.
extern "C" const char* __asan_default_options()
{
    return "intercept_tls_get_addr=0";
}
