// Replaces the closed error-logging library, which is needed at load time but never called.
extern "C" {
extern const char zverrlog_stub[];
const char zverrlog_stub[] = "no error log is kept by the simulated adapters";
}
