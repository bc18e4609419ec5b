
/* exported init */
function init() {
    return new QuelltonBackground();
}
