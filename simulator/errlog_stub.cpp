// Stands in for the closed error-logging library: it is needed at load time and nothing calls it.
extern "C" {
extern const char zverrlog_stand_in[];
const char zverrlog_stand_in[] = "no error log is kept by the simulated adapters";
}
