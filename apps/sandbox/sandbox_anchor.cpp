// Keeps the sandbox library non-empty while its sources grow.
namespace qmv::sandbox { void keepLinked() {} }
