// Stands in for the closed error-logging library: it is needed at load time and nothing calls it.
extern "C" {
extern const char zverrlog_stub[];
const char zverrlog_stub[] = "no error log is kept by the simulated adapters";
}
