# The exact significance of a case, given its ties, by a package of R on columns of doubles in files. Driven line by line
# from standard input:
#
#   columns   reads the columns out of the folder named behind it; answers how many there are
#   run       one call on data that was prepared; answers its seconds of processor time and its two-sided significance
#   version   answers the version of the package

groups_frame <- function(columns) data.frame(value = columns[[1]], group = factor(columns[[2]]))
groups_of <- function(columns) split(columns[[1]], columns[[2]])
as_they_are <- function(columns) columns

cases <- list(
  "mann-whitney coin" = list(groups_frame, function(data) {
    coin::pvalue(coin::wilcox_test(value ~ group, data, distribution = "exact"))
  }),
  "mann-whitney exactRankTests" = list(groups_of, function(groups) {
    exactRankTests::wilcox.exact(groups[[1]], groups[[2]], exact = TRUE)$p.value
  }),
  "wilcoxon-pairs coin" = list(as.data.frame, function(data) {
    coin::pvalue(coin::wilcoxsign_test(data[[2]] ~ data[[1]], distribution = "exact", zero.method = "Wilcoxon"))
  }),
  "wilcoxon-pairs exactRankTests" = list(as_they_are, function(columns) {
    exactRankTests::wilcox.exact(columns[[2]], columns[[1]], paired = TRUE, exact = TRUE)$p.value
  })
)

options(warn = -1, digits = 15)
arguments <- commandArgs(trailingOnly = TRUE)
case <- cases[[paste(arguments, collapse = " ")]]
invisible(suppressMessages(loadNamespace(arguments[2])))
orders <- file("stdin", "r")
while (length(order <- readLines(orders, n = 1)) > 0) {
  if (order == "version") {
    cat(format(packageVersion(arguments[2])), "\n", sep = "")
  } else if (startsWith(order, "columns ")) {
    folder <- substring(order, nchar("columns ") + 1)
    files <- file.path(folder, paste0("column", seq_along(list.files(folder, "^column")) - 1))
    prepared <- case[[1]](lapply(files, function(path) readBin(path, "double", file.size(path) / 8)))
    cat(length(files), "\n", sep = "")
  } else {
    spent <- system.time(p <- case[[2]](prepared))[c("user.self", "sys.self")]
    cat(sum(spent), p, "\n")
  }
  flush(stdout())
}
