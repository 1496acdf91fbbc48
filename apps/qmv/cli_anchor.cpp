// Keeps the CLI library non-empty while its sources grow.
namespace qmv::cli { void keepLinked() {} }
