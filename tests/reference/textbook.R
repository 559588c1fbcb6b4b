# Rscript textbook.R: computes what the reports under textbook numerics should show and writes textbook.tsv beside it.
# Needs R with MASS, survival, psych and GPArotation; run.py needs only what is written. A line holds, tab separated: case,
# kind, options, data file below data/, start of the table's title, label of the row (or # and the number of the line below
# the title), number of the first cell, values joined by |, and "turned" where the sign of each column of the table is free.
# The table "saved" is that of --save, with the name of a column for a label and the values of the first samples.
# The statistics that differ from classic numerics come first; no value is taken from a report.
suppressMessages({ library(MASS); library(survival); library(psych) })
here <- dirname(sub("--file=", "", grep("--file=", commandArgs(FALSE), value = TRUE)))
lines <- character()
now <- character()

# Starts a case and returns its data, the sample labels as row names. `drop`: variables to exclude.
start <- function(name, kind, file, ..., drop = character()) {
  excluded <- if (length(drop)) paste("--exclude", paste(drop, collapse = ","))
  now <<- c(name, kind, paste(c(..., excluded), collapse = " "), file)
  if (now[3] == "") now[3] <<- "-"
  x <- read.csv(file.path(here, "data", file), row.names = 1, check.names = FALSE)
  x <- x[setdiff(names(x), drop)]
  setNames(x, substr(names(x), 1, 15)) # as the report cuts them
}
# A row for each row of `values`, which is a matrix or, for a single column, a vector.
put <- function(table, labels, values, first = 2, turned = FALSE) {
  values <- as.matrix(values)
  if (length(labels) != nrow(values) || !all(is.finite(values))) stop(now[1], ": ", table)
  text <- apply(values, 1, function(v) paste(sprintf("%.15g", v), collapse = "|"))
  lines <<- c(lines, paste(paste(now, collapse = "\t"), table, labels, first, text, if (turned) "turned" else "-", sep = "\t"))
}
row <- function(table, label, ..., first = 2, turned = FALSE) put(table, label, rbind(c(...)), first, turned)
triangle <- function(table, labels, m) for (i in seq_len(nrow(m))) row(table, labels[i], m[i, 1:i])
saved <- function(..., turned = FALSE) for (column in names(list(...))) row("saved", column, head(as.vector(list(...)[[column]]), 60), first = 1, turned = turned)
numbered <- function(prefix, values, turned = TRUE) do.call(saved, c(setNames(as.list(as.data.frame(values)), paste0(prefix, seq_len(ncol(values)))), turned = turned))
samples <- function(table, x, values, ...) put(table, trimws(substr(rownames(x)[1:10], 1, 15)), as.matrix(values)[1:10, , drop = FALSE], ...) # enough

upper <- function(x, df) pchisq(x, df, lower.tail = FALSE)
upper_f <- function(f, a, b) pf(f, a, b, lower.tail = FALSE)
population <- function(x) { n <- nrow(x); sweep(sweep(x, 2, colMeans(x)), 2, apply(x, 2, sd) * sqrt((n - 1) / n), "/") }

fundamental <- function() {
  x <- start("fundamental", "fundamental", "mtcars.csv", "--covariance --correlation --spearman --kendall", drop = c("disp", "hp", "wt", "cyl", "vs"))
  n <- nrow(x)
  for (s in list(list("mean", mean), list("std.dev", sd), list("variance", var), list("skew", function(v) skew(v, type = 3)),
                 list("kurtosis", function(v) kurtosi(v, type = 3)))) row("basis statistics", s[[1]], sapply(x, s[[2]]))
  triangle("covariance matrix", names(x), cov(x))
  triangle("correlation matrix", names(x), cor(x))
  for (i in 1:(ncol(x) - 1)) for (j in (i + 1):ncol(x)) {
    label <- sprintf("var%d & var%d", i, j)
    r <- cor(x[[i]], x[[j]], method = "spearman")
    d <- sum((rank(x[[i]]) - rank(x[[j]]))^2)
    z <- -r * sqrt(n - 1)
    row("speaman", label, d, z, 2 * pnorm(-abs(z)), r, 2 * pt(-abs(r) * sqrt((n - 2) / (1 - r^2)), n - 2))
    k <- cor.test(x[[i]], x[[j]], method = "kendall", exact = FALSE)
    row("kendall", label, k$estimate, k$statistic, k$p.value)
  }
}

# `of_y`, `of_x` make the model a line, `back` turns a prediction back.
regression <- function(kind, file, purpose, of_x = identity, of_y = identity, back = identity, drop = character(), options = character(), degree = NULL) {
  x <- start(kind, kind, file, "--purpose", purpose, "--method all", options, drop = drop)
  X <- as.data.frame(lapply(x[setdiff(names(x), purpose)], of_x))
  for (v in names(degree)) X[[v]] <- X[[v]]^degree[[v]]
  y <- of_y(x[[purpose]])
  fit <- lm(y ~ ., cbind(X, y = y))
  s <- summary(fit)
  b <- s$coefficients[-1, , drop = FALSE]
  n <- nrow(X)
  k <- ncol(X)
  put("partial regression", names(X), cbind(b[, 1:2, drop = FALSE], b[, 3]^2, b[, 4]))
  row("partial regression", "constant", coef(fit)[1])
  r <- solve(cor(cbind(X, y)))
  put("standard partial", names(X), cbind(b[, 1] * sapply(X, sd) / sd(y), -r[1:k, k + 1] / sqrt(r[k + 1, k + 1] * diag(r)[1:k])))
  f <- s$fstatistic
  again <- 1 - (n - 1) * (n + k + 1) / ((n + 1) * (n - k - 1)) * (1 - s$r.squared)
  row("multiple coef", "model value", s$r.squared, sqrt(s$r.squared), f[1], upper_f(f[1], f[2], f[3]))
  put("multiple coef", c("adjusted", "re-adjusted"), cbind(c(s$adj.r.squared, again), sqrt(pmax(0, c(s$adj.r.squared, again)))))
  limits <- back(suppressWarnings(predict(fit, interval = "prediction")))
  limits[, 2:3] <- t(apply(limits[, 2:3], 1, sort))
  samples("-- effective coverage", x, cbind(x[[purpose]], limits, x[[purpose]] - limits[, 1]))
  saved(prediction = limits[, 1], residual = x[[purpose]] - limits[, 1], s.residual = resid(fit) / s$sigma, infimum = limits[, 2], supremum = limits[, 3])
}

components <- function(base) {
  x <- start(paste0("pca-", base), "pca", "USArrests.csv", "--components 4 --base", base)
  n <- nrow(x)
  p <- ncol(x)
  e <- eigen(if (base == "covariance") cov(x) else cor(x))
  l <- e$values
  # Bartlett's test of the roots from the k-th on, with the terms of Lawley for each earlier one.
  test <- sapply(1:(p - 1), function(k) {
    q <- p - k + 1
    rest <- mean(l[k:p])
    lawley <- sum(rest^2 / (l[seq_len(k - 1)] - rest)^2)
    chi <- (n - k - (2 * q^2 + q + 2) / (6 * q) + lawley) * (q * log(rest) - sum(log(l[k:p])))
    c(chi, upper(chi, (q - 1) * (q + 2) / 2), (q - 1) * (q + 2) / 2)
  })
  put("eigen value", c("eigen value", "ratio", "c.ratio"), rbind(l, l / sum(l), cumsum(l) / sum(l)))
  put("eigen value", c("chi square", "chi prob", "freedom"), test)
  put("eigen vector", names(x), e$vectors, turned = TRUE)
  divisor <- if (base == "covariance") (n - 1) / n else 1 # loadings are those of the matrix with N
  put("principal component load", names(x), e$vectors %*% diag(sqrt(l * divisor)), turned = TRUE)
  scores <- population(prcomp(x, scale. = base == "correlation")$x)
  samples("principal component score", x, scores, turned = TRUE)
  numbered("score ", scores)
}

canonical <- function(file, purpose, drop = character()) {
  x <- start(paste0("canonical-", sub(".csv", "", file)), "canonical", file, "--purpose", paste(purpose, collapse = ","), drop = drop)
  Y <- as.matrix(x[purpose])
  X <- as.matrix(x[setdiff(names(x), purpose)])
  n <- nrow(x)
  p <- ncol(x)
  q <- c(ncol(X), ncol(Y))
  cc <- cancor(X, Y)
  k <- seq_len(min(q))
  r2 <- cc$cor[k]^2
  w <- rev(cumprod(rev(1 - r2)))
  chi <- -(n - 1 - (p + 1) / 2 - (k - 1) + c(0, cumsum(1 / r2))[k]) * log(w)
  df <- (q[1] - k + 1) * (q[2] - k + 1)
  put("eigen value", c("eigen", "correlation", "wilks.l", "chi.square", "chi.prob", "deg.free"), rbind(r2, sqrt(r2), w, chi, upper(chi, df), df))
  s <- if (prod(q) > 2) sqrt((prod(q)^2 - 4) / (sum(q^2) - 5)) else 1
  df2 <- s * (n - 1.5 - p / 2) + 1 - prod(q) / 2
  f <- (w[1]^(-1 / s) - 1) * df2 / prod(q)
  put("rao", c("f.value", "f.probability", "deg.free.1", "deg.free.2"), c(f, upper_f(f, prod(q), df2), prod(q), df2))
  side <- function(name, Z, coefficients, label, variate) {
    weights <- apply(Z, 2, sd) * coefficients[, k, drop = FALSE] * sqrt(n - 1)
    structure <- cor(Z, scale(Z) %*% weights)
    put(paste("weight coefficient matrix of", name), colnames(Z), weights, turned = TRUE)
    put(paste("structure matrix of", name), colnames(Z), structure, turned = TRUE)
    shared <- colMeans(structure^2) * r2
    row("redundancy", label, shared, sum(shared))
    numbered(variate, population(Z %*% coefficients[, k, drop = FALSE]))
  }
  side("explanatory", X, cc$xcoef, "explanatory", "variate x")
  side("purpose", Y, cc$ycoef, "purpose", "variate y")
}

# Quartimax rotation in a plane, of loadings divided by the roots of the communalities: the angle in closed form, where the
# gradient projection stalls after seven digits.
quartimax <- function(L) {
  h <- sqrt(rowSums(L^2))
  z <- complex(real = L[, 1], imaginary = L[, 2]) / h
  z <- z * exp(-1i * Arg(sum(z^4)) / 4)
  known <- GPArotation::quartimax(L / h, eps = 1e-7)$loadings
  B <- cbind(Re(z), Im(z))
  stopifnot(abs(sum(B^4) - sum(known^4)) < 1e-10)
  h * B
}
# Carroll's oblimin for reference axes (quartimin): each axis in turn becomes the smallest eigenvector of the criterion in it,
# until none moves; then the primary factors of these axes.
quartimin <- function(L) {
  A <- L / sqrt(rowSums(L^2))
  axes <- diag(ncol(L))
  repeat {
    old <- axes
    for (j in seq_len(ncol(L))) {
      e <- eigen(crossprod(A * sqrt(rowSums((A %*% axes[, -j, drop = FALSE])^2))))$vectors[, ncol(L)]
      axes[, j] <- e * sign(sum(e * old[, j]))
    }
    if (max(abs(axes - old)) < 1e-15) break
  }
  inverse <- solve(crossprod(axes))
  d <- 1 / sqrt(diag(inverse))
  phi <- inverse * outer(d, d)
  pattern <- sweep(L %*% axes, 2, d, "/")
  list(pattern = pattern, phi = phi, structure = pattern %*% phi)
}
principal_factors <- function() {
  x <- start("principal-factor", "principal-factor", "eight-tests.csv", "--factors 2 --rotation orthogonal --criterion quartimax")
  R <- cor(x)
  h <- 1 - 1 / diag(solve(R))
  repeat {
    e <- eigen(R - diag(1 - h))
    L <- e$vectors[, 1:2] %*% diag(sqrt(e$values[1:2]))
    done <- max(abs(rowSums(L^2) - h)) < 1e-15
    h <- rowSums(L^2)
    if (done) break
  }
  B <- quartimax(L)
  put("communality", names(x), h)
  put("factor loading before", names(x), L, turned = TRUE)
  put("factor loading after", names(x), B, turned = TRUE)
  scores <- population(as.matrix(x)) %*% solve(R, B)
  samples("factor score", x, scores, turned = TRUE)
  numbered("score ", scores)
}
likelihood_factors <- function() {
  x <- start("ml-factor", "ml-factor", "eight-tests.csv", "--factors 2 --rotation oblique --criterion quartimin")
  R <- cor(x)
  of <- function(u) { e <- eigen(R / sqrt(outer(u, u))); sqrt(u) * e$vectors[, 1:2] %*% diag(sqrt(e$values[1:2] - 1)) }
  gradient <- function(u) { L <- of(u); diag(L %*% t(L) + diag(u) - R) / u^2 }
  u <- factanal(x, 2, rotation = "none")$uniquenesses
  for (i in 1:6) { # Newton's method from there, with derivatives by differences
    J <- sapply(seq_along(u), function(j) { d <- replace(0 * u, j, 1e-5); (gradient(u + d) - gradient(u - d)) / 2e-5 })
    u <- u - solve(J, gradient(u))
  }
  stopifnot(max(abs(gradient(u))) < 1e-12)
  L <- of(u)
  r <- quartimin(L)
  put("communality", names(x), 1 - u)
  put("factor loading before", names(x), L, turned = TRUE)
  put("factor loading after", names(x), r$pattern, turned = TRUE)
  put("factor structure", names(x), r$structure, turned = TRUE)
  row("correlation coefficient", "factor 2", r$phi[2, 1], turned = TRUE)
  scores <- population(as.matrix(x)) %*% solve(R, r$structure)
  samples("factor score", x, scores, turned = TRUE)
  numbered("score ", scores)
}

discriminant <- function() { # only the first root is significant at this level, yet both classify
  x <- start("discriminant", "discriminant", "iris-group.csv", "--group Species --box-m --canon-alpha 1e-9")
  g <- factor(x$Species)
  X <- as.matrix(x[names(x) != "Species"])
  n <- nrow(X)
  q <- ncol(X)
  G <- nlevels(g)
  S <- lapply(split(as.data.frame(X), g), cov)
  m <- as.vector(table(g)) - 1
  pooled <- Reduce(`+`, Map(`*`, S, m)) / (n - G)
  triangle("covariance matrix", colnames(X), pooled)
  M <- (n - G) * log(det(pooled)) - sum(m * log(sapply(S, det)))
  df <- q * (q + 1) * (G - 1) / 2
  M <- M * (1 - (sum(1 / m) - 1 / (n - G)) * (2 * q^2 + 3 * q - 1) / (6 * (q + 1) * (G - 1)))
  put("box M test : chi", c("chi.square", "chi.prob", "chi.free"), c(M, upper(M, df), df))
  l <- lda(X, g)
  roots <- l$svd^2 * (G - 1) / (n - G)
  k <- seq_along(roots) - 1
  chi <- (n - 1 - (q + G) / 2) * rev(cumsum(rev(log1p(roots))))
  free <- (q - k) * (G - 1 - k)
  put("eigen value and chi", c("eigen", "chi square", "chi prob", "chi free"), rbind(roots, chi, upper(chi, free), free))
  row("vector number", "vector", sum(upper(chi, free) < 1e-9))
  put("canonical dis", colnames(X), l$scaling[, 1], turned = TRUE)
  put("standardized can", colnames(X), (l$scaling * sqrt(diag(pooled)))[, 1], turned = TRUE)
  put("bary", paste("group", 1:G), (scale(l$means, colMeans(X), FALSE) %*% l$scaling)[, 1], turned = TRUE)
  put("number of discriminated", paste("p.group", 1:G), unclass(table(g, predict(l, prior = rep(1 / G, G))$class)))
  lambda <- function(v) det(crossprod(resid(lm(X[, v] ~ g)))) / det(crossprod(scale(X[, v], scale = FALSE)))
  entered <- character()
  before <- 1
  while (length(entered) < q) { # Wilks' lambda tells which variable enters
    left <- setdiff(colnames(X), entered)
    values <- sapply(left, function(v) lambda(c(entered, v)))
    entered <- c(entered, left[which.min(values)])
    df <- c(G - 1, n - G - length(entered) + 1)
    f <- (before / min(values) - 1) * df[2] / df[1]
    row("variables selected", tail(entered, 1), f, upper_f(f, df[1], df[2]), df)
    before <- min(values)
  }
  p <- predict(l, prior = rep(1 / G, G))
  numbered("score ", p$x[, 1, drop = FALSE])
  placed <- function(Z) scale(Z, colMeans(X), FALSE) %*% l$scaling
  numbered("distance ", sapply(1:G, function(j) rowSums(sweep(placed(X), 2, placed(l$means)[j, ])^2)), turned = FALSE)
  saved(d.group = as.integer(p$class))
}
fisher <- function() { # its score is half the difference of the distances from both groups, in all variables
  x <- start("discriminant-two", "discriminant", "crabs-sex.csv", "--group sex --no-forward-selection")
  X <- as.matrix(x[names(x) != "sex"])
  by <- split(as.data.frame(X), x$sex)
  W <- Reduce(`+`, lapply(by, function(b) crossprod(scale(b, scale = FALSE)))) / (nrow(X) - 2)
  d <- sapply(by, function(b) mahalanobis(X, colMeans(b), W))
  between <- mahalanobis(colMeans(by[[1]]), colMeans(by[[2]]), W)
  score <- (d[, 2] - d[, 1]) / 2
  saved("score 1" = score, "distance 1" = (score - between / 2)^2 / between, "distance 2" = (score + between / 2)^2 / between, d.group = apply(d, 1, which.min))
}

# By the steps alone, where levels that fall do not let R cut.
cut_by_steps <- function(tree, count) {
  n <- length(tree$order)
  of <- seq_len(n)
  for (s in seq_len(n - count)) {
    ends <- sapply(tree$merge[s, ], function(m) if (m < 0) of[-m] else n + m)
    of[of %in% ends] <- n + s
  }
  match(of, unique(of))
}
clusters <- function(file, distance, criterion, method, count) {
  x <- as.matrix(start(paste("cluster", distance, criterion, sep = "-"), "cluster", file, "--distance", distance, "--criterion", criterion, "--clusters", count))
  u <- switch(distance, raw = x, standardized = population(x), mahalanobis = population(x) %*% t(chol(solve(cor(x)))))
  squared <- method %in% c("median", "centroid")
  tree <- hclust(dist(u)^(1 + squared), method)
  level <- tree$height
  put("uniting", seq_along(level), if (squared) sqrt(level) else level, first = 5)
  saved(cluster = if (is.unsorted(level)) cut_by_steps(tree, count) else cutree(tree, count))
}

association <- function() {
  x <- start("association", "association", "survey-items.csv")
  for (i in 1:(ncol(x) - 1)) for (j in (i + 1):ncol(x)) {
    t <- table(x[[i]], x[[j]])
    n <- sum(t)
    size <- dim(t)
    chi <- suppressWarnings(chisq.test(t, correct = FALSE)$statistic)
    rows <- max(rowSums(t))
    columns <- max(colSums(t))
    lambda <- (sum(apply(t, 1, max)) + sum(apply(t, 2, max)) - rows - columns) / (2 * n - rows - columns)
    label <- sprintf("var %d - var %d", i, j)
    row("association measures -- cramer", label, chi, sqrt(chi / n), sqrt(chi / (n + chi)), sqrt(chi / n / (min(size) - 1)), sqrt(chi / n / sqrt(prod(size - 1))), lambda)
    product <- outer(x[[i]], x[[i]], "-") * outer(x[[j]], x[[j]], "-")
    row("association measures -- goodman-kruskul's gamma", label, sum(sign(product)) / sum(product != 0), cor(x[[i]], x[[j]], method = "kendall"))
  }
}

categories <- function(f) { # "1 (  7)", counted through all items
  levels <- unlist(lapply(f, levels))
  sprintf("%s (%3d)", levels, seq_along(levels))
}
quantification1 <- function() {
  x <- start("quant1", "quant1", "survey-y.csv", "--purpose y")
  f <- as.data.frame(lapply(x[names(x) != "y"], factor))
  fit <- lm(y ~ ., cbind(f, y = x$y))
  weights <- lapply(names(f), function(v) { b <- fit$coefficients[paste0(v, levels(f[[v]]))]; b[is.na(b)] <- 0; b })
  scores <- mapply(function(w, v) w[as.integer(v)], weights, f)
  put("quantity", categories(f), cbind(unlist(weights), unlist(weights) - rep(colMeans(scores), lengths(weights))))
  row("quantity", "constant", coef(fit)[1])
  R <- cor(cbind(scores, x$y))
  I <- solve(R)
  p <- ncol(R)
  put("quantity", names(f), cbind(R[-p, p], -I[-p, p] / sqrt(I[p, p] * diag(I)[-p])), first = 4)
  put("multiple", c("m.c.determ", "m.c.coef"), c(summary(fit)$r.squared, sqrt(summary(fit)$r.squared)))
  samples("mesure", x, cbind(x$y, fitted(fit), resid(fit), resid(fit) / summary(fit)$sigma))
  saved(prediction = fitted(fit), residual = resid(fit), s.residual = resid(fit) / summary(fit)$sigma)
}
quantification2 <- function() {
  x <- start("quant2", "quant2", "survey-group.csv", "--group group")
  g <- factor(x$group)
  f <- as.data.frame(lapply(x[names(x) != "group"], factor))
  Z <- model.matrix(~., f)[, -1]
  cc <- cancor(Z, model.matrix(~g)[, -1])
  put("canonical", c("coef.square", "c.c.coef"), rbind(cc$cor^2, cc$cor))
  b <- matrix(0, 0, 2) # the first category of an item counts 0; the scores have variance 1
  scale <- sqrt(nrow(x)) * cc$xcoef[, 1:2]
  for (v in names(f)) b <- rbind(b, 0, scale[paste0(v, levels(f[[v]])[-1]), ])
  put("quantity of", categories(f), b, turned = TRUE)
  samples("score of", x, Z %*% scale, turned = TRUE)
  numbered("score ", Z %*% scale)
  put("centroid", paste("group", levels(g)), apply(Z %*% scale, 2, tapply, g, mean), turned = TRUE)
}
quantification3 <- function() {
  x <- as.matrix(start("quant3", "quant3", "haireye-cross.csv", "--data cross --factors 4"))
  n <- sum(x)
  P <- x / n
  r <- rowSums(P)
  c <- colSums(P)
  e <- svd((P - outer(r, c)) / sqrt(outer(r, c)))
  k <- 1:3
  l <- e$d[k]^2
  df <- sum(dim(x)) - 1 - 2 * k
  chi <- -(n - 1 - (sum(dim(x)) - 1) / 2) * log(1 - l)
  put("-- eigen value", c("eigen", "ratio.c", "c.ratio"), rbind(l, l / sum(l), cumsum(l) / sum(l)), first = 3)
  all <- chisq.test(x)
  put("-- eigen value", c("chi.square", "chi.prob", "chi.free"), cbind(c(all$statistic, all$p.value, all$parameter), rbind(chi, upper(chi, df), df)))
  put("weight coefficient matrix of variable", paste("category", 1:ncol(x)), e$v[, k] / sqrt(c), turned = TRUE)
  put("weight coefficient matrix of sample", rownames(x), e$u[, k] / sqrt(r), turned = TRUE)
  numbered("score ", e$u[, k] / sqrt(r))
  tau <- function(P) (sum(t(P)^2 / colSums(P)) - sum(rowSums(P)^2)) / (1 - sum(rowSums(P)^2)) # Goodman and Kruskal
  put("redundancy", c("Re(X/Y)", "Re(Y/X)", "cramer r.c."), c(tau(P), tau(t(P)), sqrt(sum(l) / (min(dim(x)) - 1))))
}

log_linear <- function() {
  n <- as.vector(t(as.matrix(start("loglinear", "loglinear", "haireye-table.csv", "--a 4 --b 4 --c 2 --model1 8 --model2 1"))))
  g <- cbind(expand.grid(C = factor(1:2), B = factor(1:4), A = factor(1:4)), n)
  fit <- function(f, more = 0) glm(f, poisson, transform(g, n = n + more), contrasts = list(A = "contr.sum", B = "contr.sum", C = "contr.sum"), control = glm.control(epsilon = 1e-14, maxit = 100))
  texts <- c("uAB(ij)" = "A:B", "uAC(ik)" = "A:C", "uBC(jk)" = "B:C")
  for (have in list(1:3, 1:2, c(1, 3), 2:3, 1, 2, 3, integer())) {
    m <- fit(reformulate(c("A", "B", "C", texts[have]), "n"))
    label <- paste0("u+uA(i)+uB(j)+uC(k)", paste0(ifelse(1:3 %in% have, "+", " "), ifelse(1:3 %in% have, names(texts), "       "), collapse = ""))
    row("model list", trimws(label), deviance(m) - 2 * df.residual(m), deviance(m), df.residual(m))
  }
  # Every level of each term, those that the contrasts leave out included: value and error of a sum of coefficients.
  term <- function(m, of) {
    X <- model.matrix(m)
    own <- attr(X, "assign") %in% match(paste(of, collapse = ":"), attr(terms(m), "term.labels"))
    at <- !duplicated(g[of])
    X[, !own] <- 0
    W <- crossprod(model.matrix(m) * sqrt(fitted(m)))
    value <- if (any(own)) cbind(X %*% coef(m), sqrt(rowSums((X %*% solve(W)) * X))) else matrix(0, nrow(X), 2)
    list(levels = g[at, of, drop = FALSE], value = value[at, , drop = FALSE])
  }
  put_terms <- function(table, models, all) for (of in all) {
    t <- lapply(models, term, of)
    levels <- sapply(c("A", "B", "C"), function(v) if (v %in% of) as.character(t[[1]]$levels[[v]]) else rep("", nrow(t[[1]]$levels)))
    put(table, apply(levels, 1, paste, collapse = ":"), do.call(cbind, lapply(t, `[[`, "value")), first = 4)
  }
  # Goodman adds 0.5 to each cell of the saturated model.
  two <- list("A", "B", "C", c("B", "A"), c("C", "A"), c("C", "B"))
  put_terms("estimated u-terms under", list(suppressWarnings(fit(n ~ C * B * A, 0.5))), c(two, list(c("C", "B", "A"))))
  models <- list(fit(n ~ C + B + A), fit(n ~ (C + B + A)^2))
  put("frequency", paste0("#", 1 + 3 * 1:16), cbind(matrix(fitted(models[[1]]), ncol = 2, byrow = TRUE), matrix(fitted(models[[2]]), ncol = 2, byrow = TRUE)), first = 4)
  put_terms("estimated u-terms of", models, two)
}

similarities <- function() {
  S <- as.matrix(start("pcoa", "pcoa", "five.csv", "--dimensions 4"))
  B <- sweep(sweep(S, 1, rowMeans(S)), 2, colMeans(S)) + mean(S)
  e <- eigen((B + t(B)) / 2)
  k <- 1:3
  put("doubly", rownames(S), B)
  put("eigen value", c("eigen", "ratio"), rbind(e$values[k], e$values[k] / sum(e$values[e$values > 1e-9])))
  put("standardized", rownames(S), e$vectors[, k] %*% diag(sqrt(e$values[k])), turned = TRUE)
  numbered("coordinate ", e$vectors[, k] %*% diag(sqrt(e$values[k])))
  S <- as.matrix(start("quant4", "quant4", "five.csv", "--dimensions 4"))
  H <- S + t(S)
  diag(H) <- 0
  e <- eigen(H - diag(rowSums(H)))
  row("eigen value", "eigen", e$values[1:4])
  put("eigen vector", rownames(S), e$vectors[, 1:4], turned = TRUE)
  numbered("coordinate ", e$vectors[, 1:4])
}

wald <- function(b, se, ...) cbind(b, se, (b / se)^2, upper((b / se)^2, 1), ...)
logistic <- function() {
  x <- start("logistic", "logistic", "crabs-sex.csv", "--state sex --division 1.5", drop = c("CL", "CW"))
  y <- as.integer(x$sex > 1.5)
  X <- x[names(x) != "sex"]
  f <- glm(y ~ ., binomial, cbind(X, y = y), control = glm.control(epsilon = 1e-14, maxit = 100))
  Z <- model.matrix(f)
  p <- fitted(f)
  o <- c(2:ncol(Z), 1)
  b <- coef(f)[o]
  put("coefficient", c(names(X), "constant"), wald(b, sqrt(diag(solve(crossprod(Z * sqrt(p * (1 - p))))))[o], exp(b)))
  put("log likelihood", c("null model", "fitted model"), cbind(-c(f$null.deviance, deviance(f)) / 2, c(f$null.deviance, deviance(f)), c(f$null.deviance + 2, AIC(f))))
  chi <- f$null.deviance - deviance(f)
  row("likelihood ratio", "model", chi, ncol(X), upper(chi, ncol(X)))
  samples("state, prob", x, cbind(y, p, resid(f, "pearson")))
  saved(probability = p)
}
weibull <- function() {
  x <- start("weibull", "weibull", "ovarian.csv")
  X <- x[setdiff(names(x), c("fustat", "futime"))]
  S <- Surv(x$futime, x$fustat > 0.5)
  fits <- lapply(c("exponential", "weibull"), function(m) survreg(S ~ ., cbind(X, S = S), dist = m, control = survreg.control(rel.tolerance = 1e-15, maxiter = 200)))
  names(fits) <- c("exponential", "weibull")
  o <- c(1 + seq_along(X), 1)
  for (m in names(fits)) put(paste(m, "model"), c(names(X), "constant"), wald(coef(fits[[m]])[o], sqrt(diag(vcov(fits[[m]])))[o]))
  w <- fits$weibull
  chi <- 2 * (w$loglik[2] - fits$exponential$loglik[2])
  row("shape", "shape", 1 / w$scale, sqrt(vcov(w)["Log(scale)", "Log(scale)"]) / w$scale, chi, upper(chi, 1))
  put("log likelihood", names(fits), t(sapply(fits, function(f) c(f$loglik[2], AIC(f)))))
  median <- sapply(fits, predict, type = "quantile", p = 0.5)
  alive <- sapply(fits, function(f) exp(-(x$futime / exp(f$linear.predictors))^(1 / f$scale)))
  samples("time, state", x, cbind(x$futime, x$fustat, median[, 1], alive[, 1], median[, 2], alive[, 2]))
  saved(e.predictor = fits$exponential$linear.predictors, e.survival = alive[, 1], w.predictor = w$linear.predictors, w.survival = alive[, 2])
}
hazard <- function() {
  x <- start("hazard", "hazard", "lung.csv", "--state status --time time --division 1.5")
  X <- x[setdiff(names(x), c("status", "time"))]
  S <- Surv(x$time, x$status > 1.5)
  f <- coxph(S ~ ., cbind(X, S = S), ties = "breslow", nocenter = NULL, control = coxph.control(eps = 1e-14, toler.chol = 1e-15, iter.max = 100))
  put("coefficient", names(X), wald(coef(f), sqrt(diag(vcov(f))), exp(coef(f))))
  put("log partial", c("null model", "fitted model"), cbind(f$loglik, c(-2 * f$loglik[1], AIC(f))))
  row("likelihood ratio", "model", 2 * diff(f$loglik), ncol(X), upper(2 * diff(f$loglik), ncol(X)))
  b <- survfit(f, se.fit = FALSE)
  at <- which(b$n.event > 0)[1:20]
  put("baseline", paste("event", 1:20), cbind(b$time, b$n.risk, b$n.event, b$cumhaz, b$surv)[at, ])
  samples("time, state", x, cbind(x$time, x$status > 1.5, predict(f, type = "risk"), resid(f, "martingale")))
  saved(predictor = predict(f, type = "lp"), survival = exp(-predict(f, type = "expected")))
}

fundamental()
regression("regression", "longley.csv", "Employed")
regression("polynomial", "mtcars.csv", "mpg", drop = c("cyl", "disp", "drat", "vs", "am", "gear", "carb"), options = "--degree wt=2,hp=0.5", degree = c(wt = 2, hp = 0.5))
regression("involution", "stackloss.csv", "stack.loss", log, log, exp)
regression("exponential", "boston.csv", "medv", identity, log, exp)
regression("inverse", "mtcars.csv", "mpg", identity, function(y) 1 / y, function(p) 1 / p, drop = c("cyl", "drat", "vs", "am", "gear", "carb"))
logit <- function(p) log(p / (1 - p))
regression("logistic-curve-1", "../../../samples/menarche.csv", "share", identity, logit, plogis, drop = "percent")
regression("logistic-curve-2", "USArrests.csv", "UrbanPop", identity, function(y) logit(y / 100), function(p) 100 * plogis(p))
components("correlation")
components("covariance")
canonical("mtcars.csv", c("mpg", "hp", "wt"))
canonical("USArrests.csv", "Rape", drop = "Murder")
principal_factors()
likelihood_factors()
discriminant()
fisher()
clusters("USArrests.csv", "standardized", "ward", "ward.D2", 4)
clusters("swiss.csv", "raw", "nearest", "single", 3)
clusters("stackloss.csv", "mahalanobis", "median", "median", 5)
clusters("USArrests.csv", "mahalanobis", "centroid", "centroid", 6)
clusters("mtcars.csv", "standardized", "furthest", "complete", 2)
clusters("longley.csv", "raw", "group-average", "average", 4)
association()
quantification1()
quantification2()
quantification3()
log_linear()
similarities()
logistic()
weibull()
hazard()
writeLines(lines, file.path(here, "textbook.tsv"))
